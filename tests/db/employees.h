#pragma once

#include "support/fresh_shop.h"

/// Gives \a shop \a count employees: 社員1, 社員2, …
inline void fillEmployees(FreshShop &shop, int count)
{
    shop.run(QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) "
                            "INSERT INTO 社員 (社員ID, 社員名, 内線番号) SELECT i, '社員' || i, NULL FROM n"),
             {count});
}

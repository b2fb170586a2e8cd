#pragma once

#include "base/result.h"

#include <optional>

namespace db
{
class Connection;
}

namespace masters
{

/// The business's own record, as every printed form names its sender. What the file does not hold is empty.
struct OwnCompany
{
    QString name1; // 会社名1
    QString name2;
    QString zip;
    QString address1;
    QString address2;
    QString tel1;
    QString tel2;
    QString fax;
    QString bank1; // 取引銀行1
    QString bank2;
    QString memo;               // 備考
    QString registrationNumber; // 登録番号, as it was typed in
};

/// The first row of 自社情報, the one that counts; nothing when the table is empty.
base::Result<std::optional<OwnCompany>> ownCompany(db::Connection &connection);

} // namespace masters

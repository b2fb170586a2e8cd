#pragma once

#include "book/slip_kind.h"
#include "book/taxes_by_rate.h"

#include <QString>

namespace book
{

/// What stands beside the total of a slip of goods that is entered.
struct ShownTotals
{
    QString caption; // of the total: "合計（税抜）"
    QString tax;     // whether it is in the total
    QString withTax; // what the slip comes to, as on its paper: "10,800 円（税込）"
};

/// That of \a goods, which come to \a total yen, of a counterpart of \a taxClass. \a inclusive: their prices
/// include the tax; \a isUnrounded: which is shown unrounded then.
base::Result<ShownTotals> shownTotals(double total, const std::vector<TaxableAmount> &goods,
                                      TaxClass taxClass, bool inclusive, bool isUnrounded);

} // namespace book

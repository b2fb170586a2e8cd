#pragma once

#include "book/slip_store.h"

namespace book
{

/// The discount \a line, whose amount is negative, as lines at the rates of \a goods. Over several rates it
/// is divided in proportion to what was sold at each, in whole yen, the rest to the standard rate (改正消費
/// 税法基本通達 on 一括値引); of goods of one rate it has that. A line that there is nothing to divide over
/// stays as it is. \a slipRate: percent.
std::vector<GoodsLine> dividedOverRates(const GoodsLine &line, const std::vector<TaxableAmount> &goods,
                                        double slipRate);

/// Appends the discount \a line to the slip \a id so divided over what the file holds of it. \return the
/// lines. Within the transaction of the caller.
base::Result<std::vector<GoodsLine>> addDiscount(db::Connection &connection, qint64 id, const GoodsLine &line,
                                                 double slipRate);

} // namespace book

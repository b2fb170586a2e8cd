#pragma once

#include "base/report.h"
#include "reports/purchases/purchase_list.h"

namespace reports
{

/// "2026/04/01～2026/04/30"
QString shownPeriod(const book::Period &period);

/// The monthly list, all its figures, as it is printed and written.
base::Report purchaseReport(const PurchaseList &list, const book::Period &period);

/// The figures of the monthly list that the screen has columns for.
base::Report shownPurchases(const PurchaseList &list);

} // namespace reports

#pragma once

#include "printing/list_sheet.h"
#include "reports/purchases/purchase_list.h"

namespace reports
{

/// "2026/04/01～2026/04/30"
QString shownPeriod(const book::Period &period);

/// The monthly list as it is printed on \a today: A4 lying, with a row of totals.
printing::List printedList(const PurchaseList &list, const book::Period &period, const QDate &today);

/// What a file of the list is called: "月別仕入一覧 2026-04-01～2026-04-30".
QString fileTitle(const book::Period &period);

/// Whether \a list can be written as \a fileName; see tables::checkTarget().
base::Status checkPurchaseExport(const PurchaseList &list, const QString &fileName);

/// Writes \a list with its row of totals as \a fileName; see tables::writeTable().
base::Status exportPurchases(const PurchaseList &list, const QString &fileName,
                             const base::Progress &progress);

} // namespace reports

#pragma once

#include "reports/bills/bill_list.h"
#include "slips/issued/issued_search.h"

#include <QHash>

// Which of the bills that were computed are out already, in whatever window or program run they were issued.
namespace reports
{

/// By customer.
using IssuedBills = QHash<qint64, slips::LastIssue>;

/// Of those of \a bills that were issued, for the same customer and last day, the last time. One whose print
/// job was taken back is not out.
base::Result<IssuedBills> issuedOf(db::Connection &connection, const std::vector<CustomerBill> &bills);

/// "発行済 2026/11/22", and how much it was issued for where that is not \a billed yen:
/// "発行済 2026/11/22（請求額 12,345 円）".
QString issueWords(const slips::LastIssue &issue, double billed);

} // namespace reports

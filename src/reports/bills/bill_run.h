#pragma once

#include "base/progress.h"
#include "reports/bills/bill.h"
#include "reports/bills/bill_list.h"
#include "reports/bills/bill_tax.h"

#include <functional>

// Issuing the bills of many customers, one after the other, and booking their tax at once.
namespace reports
{

/// How far a run came. What is neither issued nor changed is still to be done.
struct BillRunOutcome
{
    std::vector<qint64> issued;         // customers
    std::vector<qint64> doubtful;       // whose tax is to be looked at first; it was not issued
    std::vector<qint64> changed;        // whose bill is another by now than was listed; it was not issued
    std::optional<base::Error> failure; // what ended the run, unless the clerk did
    QString failedFor;                  // whose bill it was
    bool stopped = false;               // by the clerk
};

/// Issues one bill. An error ends the run; where it is `gone` the paper is out all the same.
using IssueBill = std::function<base::Status(const Bill &)>;

/// Has \a issue issue each of \a bills, read anew from the slips, until one cannot be. \a progress counts
/// bills and stops between two of them.
BillRunOutcome issueBills(db::Connection &connection, const std::vector<CustomerBill> &bills,
                          const BillOptions &options, const IssueBill &issue, const base::Progress &progress);

/// Books the tax that each of \a bills lacks, in one transaction: a slip for each, as \a pattern is but for
/// its customer. Fails, and books nothing, where a bill is another by now than was listed.
base::Result<std::vector<BillTaxSlip>> bookBillTaxes(db::Connection &connection,
                                                     const std::vector<CustomerBill> &bills,
                                                     const BillOptions &options,
                                                     const book::NewSlip &pattern);

/// Takes all of \a slips back, or none, where another program has changed one.
base::Status cancelBillTaxes(db::Connection &connection, const std::vector<BillTaxSlip> &slips);

/// "請求書_7_山田商店_20261031.pdf": no two customers have the same, whatever they are called.
QString billFileName(const CustomerBill &bill);

} // namespace reports

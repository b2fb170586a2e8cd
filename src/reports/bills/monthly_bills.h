#pragma once

#include "base/report.h"
#include "reports/bills/bill_list.h"

// What the bills of all customers come to: the monthly list, with how old is what they owe.
namespace reports
{

/// Which list.
struct MonthlyBillsQuery
{
    book::Period period; // of customers' own periods, its end alone counts
    /// Each customer's own closing period: the last whole one that ended by that day. Deleted customers and
    /// slips that name nobody take the last whole month.
    bool ownPeriods = false;
    bool withIdle = false; // those whose sums are all nothing, too
};

/// The bills of \a query: first those that owe something, each lot in the order of the readings, deleted ones
/// and nobody at its end. The whole book at one moment. Fails for a period that ends before it begins.
base::Result<std::vector<CustomerBill>> monthlyBills(db::Connection &connection,
                                                     const MonthlyBillsQuery &query,
                                                     const BillOptions &options,
                                                     const base::Progress &progress);

/// Where a row of the list leads.
struct BillTarget
{
    book::CounterpartKey customer;
    bool unknown = false; // to the register: there is no bill, but a ledger
    book::Period period;

    bool operator==(const BillTarget &other) const { return customer == other.customer; }
};

/// The list as it is shown, printed and written. Its sums are those below the rows.
base::Report monthlyBillsReport(const std::vector<CustomerBill> &bills, const MonthlyBillsQuery &query);

} // namespace reports

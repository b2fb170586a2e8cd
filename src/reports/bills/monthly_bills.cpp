#include "reports/bills/monthly_bills.h"

#include "db/transaction.h"
#include "reports/bills/closing_period.h"

#include <algorithm>
#include <set>
#include <unordered_map>

namespace reports
{

namespace
{

using Bills = std::vector<CustomerBill>;

base::Result<Bills> billsOfDay(db::Connection &connection, const MonthlyBillsQuery &query, int closingDay,
                               const BillOptions &options, const base::Progress &progress)
{
    return billsOf(connection,
                   {.period = closingPeriod(closingDay, query.period.to),
                    .closingDay = closingDay,
                    .withAges = true,
                    .withIdle = query.withIdle},
                   options, progress);
}

// The whole month's list gives the order, those whose bills close with it, and who is not registered; the
// others take their places out of the lists of their closing days.
base::Result<Bills> billsOfOwnPeriods(db::Connection &connection, const MonthlyBillsQuery &query,
                                      const BillOptions &options, const base::Progress &progress)
{
    auto all =
        billsOf(connection, {.period = closingPeriod(0, query.period.to), .withAges = true, .withIdle = true},
                options, progress);
    if (!all)
        return all;
    std::set<int> days;
    for (const CustomerBill &bill : *all)
        days.insert(bill.customer.closingDay);
    days.erase(0);
    std::unordered_map<qint64, CustomerBill> others;
    for (const int day : days) {
        auto bills = billsOfDay(connection, query, day, options, progress);
        if (!bills)
            return bills;
        for (CustomerBill &bill : *bills)
            others.insert_or_assign(bill.customer.id.value_or(0), std::move(bill));
    }
    Bills listed;
    for (CustomerBill &bill : *all) {
        const auto other = others.find(bill.customer.id.value_or(0));
        if (bill.customer.closingDay == 0 || bill.customer.unknown)
            listed.push_back(std::move(bill));
        else if (other != others.end())
            listed.push_back(std::move(other->second));
    }
    return listed;
}

} // namespace

base::Result<Bills> monthlyBills(db::Connection &connection, const MonthlyBillsQuery &query,
                                 const BillOptions &options, const base::Progress &progress)
{
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    auto bills =
        query.ownPeriods
            ? billsOfOwnPeriods(connection, query, options, progress)
            : billsOf(connection, {.period = query.period, .withAges = true, .withIdle = query.withIdle},
                      options, progress);
    if (!bills)
        return bills;
    if (!query.withIdle)
        std::erase_if(*bills, [](const CustomerBill &bill) { return bill.sums.isEmpty(); });
    // What is no number is looked at first, too.
    std::ranges::stable_partition(*bills,
                                  [](const CustomerBill &bill) { return !(bill.sums.balance() <= 0); });
    return bills;
}

} // namespace reports

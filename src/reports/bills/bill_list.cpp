#include "reports/bills/bill_list.h"

#include "db/transaction.h"
#include "reports/bills/closing_period.h"
#include "reports/period_check.h"

#include <algorithm>
#include <unordered_map>

namespace reports
{

namespace
{

struct Account
{
    BillAccount bill;
    base::ExactSum salesBefore; // in the month before the period
    QString lastSale;
    QString lastReceipt;

    void add(const book::MovementSum &part)
    {
        bill.add(part);
        if (part.kind == book::sale)
            lastSale = std::max(lastSale, part.lastDay);
        else if (part.kind == book::receipt)
            lastReceipt = std::max(lastReceipt, part.lastDay);
    }
};

using Accounts = std::unordered_map<book::CounterpartKey, Account>;

// Slips of \a customers alone; of everybody where they are none.
base::Status addSums(db::Connection &connection, const BillRun &run,
                     const std::optional<std::vector<qint64>> &customers, const base::Progress &progress,
                     Accounts &accounts)
{
    return book::sumMovements(
        connection,
        {.kinds = book::balanceKindsOf(book::Party::Customer),
         .counterparts = customers,
         .days = book::Days::upTo(run.period.to)},
        {.byCounterpart = true,
         .byRate = true,
         .byBasis = true,
         .since = run.period.from,
         .withTax = true,
         .withLastDay = run.withAges},
        progress, [&accounts](const book::MovementSum &part) { accounts[part.counterpart].add(part); });
}

base::Status addSalesBefore(db::Connection &connection, const BillRun &run,
                            const std::optional<std::vector<qint64>> &customers, Accounts &accounts)
{
    return book::sumMovements(connection,
                              {.kinds = {book::sale},
                               .counterparts = customers,
                               .days = book::Days::within(monthBefore(run.period))},
                              {.byCounterpart = true}, base::unwatched,
                              [&accounts](const book::MovementSum &part) {
                                  accounts[part.counterpart].salesBefore.add(part.amount);
                              });
}

CustomerBill billFrom(BillCustomer customer, const Account &account, const BillRun &run,
                      const BillOptions &options)
{
    CustomerBill bill;
    bill.customer = std::move(customer);
    bill.period = run.period;
    bill.sums = account.bill.sums(bill.customer.taxClass, options);
    bill.hasSlipsInPeriod = account.bill.hasLinesInPeriod();
    if (run.withAges) {
        bill.lastSale = account.lastSale;
        bill.lastReceipt = account.lastReceipt;
        bill.unpaid = unpaidAges(bill.sums.balance(), bill.sums.sales, account.salesBefore.value());
    }
    return bill;
}

// Takes the accounts in the order of the customers; what is left belongs to deleted ones and to nobody.
std::vector<CustomerBill> listed(std::vector<BillCustomer> customers, Accounts accounts, const BillRun &run,
                                 const BillOptions &options)
{
    std::vector<CustomerBill> bills;
    const auto take = [&](BillCustomer customer, const Account &account) {
        CustomerBill bill = billFrom(std::move(customer), account, run, options);
        if (run.withIdle || !bill.sums.isEmpty())
            bills.push_back(std::move(bill));
    };
    for (BillCustomer &customer : customers) {
        const auto account = accounts.extract(customer.id);
        if (account || run.withIdle)
            take(std::move(customer), account ? account.mapped() : Account());
    }
    std::vector<book::CounterpartKey> unknown;
    for (const auto &[id, account] : accounts)
        unknown.push_back(id);
    std::ranges::sort(unknown, {}, [](book::CounterpartKey id) { return std::pair(!id, id); });
    for (const book::CounterpartKey id : unknown)
        take(unknownCustomer(id), accounts[id]);
    return bills;
}

std::vector<qint64> keysOf(const std::vector<BillCustomer> &customers)
{
    std::vector<qint64> keys;
    for (const BillCustomer &customer : customers)
        keys.push_back(customer.id.value_or(0));
    return keys;
}

} // namespace

UnpaidAges unpaidAges(double balance, double sales, double salesBefore)
{
    const double owed = std::max(balance, 0.0);
    UnpaidAges ages;
    ages.thisPeriod = std::clamp(sales, 0.0, owed);
    ages.lastPeriod = std::clamp(salesBefore, 0.0, owed - ages.thisPeriod);
    ages.older = owed - ages.thisPeriod - ages.lastPeriod;
    return ages;
}

base::Result<std::vector<CustomerBill>> billsOf(db::Connection &connection, const BillRun &run,
                                                const BillOptions &options, const base::Progress &progress)
{
    if (const base::Status good = checkPeriod(run.period); !good)
        return good.error();
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    auto customers =
        run.closingDay ? customersOfClosingDay(connection, *run.closingDay) : allCustomers(connection);
    if (!customers)
        return customers.error();
    const auto keys =
        run.closingDay ? std::optional(keysOf(*customers)) : std::optional<std::vector<qint64>>();
    Accounts accounts;
    if (const base::Status added = addSums(connection, run, keys, progress, accounts); !added)
        return added.error();
    if (run.withAges) {
        if (const base::Status added = addSalesBefore(connection, run, keys, accounts); !added)
            return added.error();
    }
    return listed(std::move(*customers), std::move(accounts), run, options);
}

} // namespace reports

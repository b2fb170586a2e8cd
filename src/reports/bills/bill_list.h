#pragma once

#include "base/progress.h"
#include "book/period.h"
#include "reports/bills/bill_customer.h"
#include "reports/bills/bill_sums.h"

// The bills of many customers at once, each the same as the customer's own (bill.h).
namespace reports
{

/// What of a balance is unpaid since when: receipts settle the oldest first. All nothing for a customer who
/// owes nothing.
struct UnpaidAges
{
    double thisPeriod = 0; // of the period's sales
    double lastPeriod = 0; // of the sales of the month before it
    double older = 0;
};

/// Those of a customer who owes \a balance yen, after sales of \a sales yen in the period and of \a
/// salesBefore yen in the month before.
UnpaidAges unpaidAges(double balance, double sales, double salesBefore);

struct CustomerBill
{
    BillCustomer customer;
    book::Period period;
    BillSums sums;
    bool hasSlipsInPeriod = false; // any line
    // Told where ages are asked for.
    QString lastSale; // yyyy-MM-dd, up to the end of the period; empty without one
    QString lastReceipt;
    UnpaidAges unpaid;
};

/// Which bills.
struct BillRun
{
    book::Period period;
    std::optional<int> closingDay{}; // none: all customers
    bool withAges = false;
    /// All customers of the closing day, or of the shop; else those whose sums are not all nothing.
    bool withIdle = true;
};

/// The bills of \a run: of a closing day the customers served last first; of all of them in the order of
/// their readings, then deleted ones that slips refer to, and slips that name nobody, at last. The whole book
/// at one moment. Fails for a period that ends before it begins.
base::Result<std::vector<CustomerBill>> billsOf(db::Connection &connection, const BillRun &run,
                                                const BillOptions &options, const base::Progress &progress);

} // namespace reports

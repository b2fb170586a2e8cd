#include "reports/bills/bill_run.h"

#include "book/taxes_by_rate.h"
#include "db/transaction.h"
#include "text/file_name.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr qsizetype longestName = 150; // bytes in UTF-8; file systems take 255 with all around it

bool isAsListed(const Bill &bill, const CustomerBill &listed)
{
    const BillSums &now = bill.sums;
    const BillSums &then = listed.sums;
    return now.previous == then.previous && now.sales == then.sales && now.received == then.received &&
           now.untaxed == then.untaxed && now.unbooked.value_or(0) == then.unbooked.value_or(0) &&
           now.due == then.due && bill.hasSlipsInPeriod == listed.hasSlipsInPeriod;
}

base::Error changedMeanwhile(const CustomerBill &bill)
{
    return {.text = u"%1 の伝票が、一覧を作った後に変わっています。消費税は計上していません。"
                    "もう一度「一覧を作る」を押してください。"_s.arg(bill.customer.name()),
            .changed = true};
}

base::Result<BillTaxSlip> bookTax(db::Connection &connection, const CustomerBill &listed,
                                  const BillOptions &options, book::NewSlip slip)
{
    const qint64 customer = listed.customer.id.value_or(0);
    const auto bill = billOf(connection, customer, listed.period, options);
    if (!bill)
        return bill.error();
    if (!isAsListed(*bill, listed))
        return changedMeanwhile(listed);
    slip.counterpart = customer;
    return enterBillTax(connection, slip, bill->sums.unbooked.value_or(0), bill->sums.unbookedRates);
}

} // namespace

BillRunOutcome issueBills(db::Connection &connection, const std::vector<CustomerBill> &bills,
                          const BillOptions &options, const IssueBill &issue, const base::Progress &progress)
{
    BillRunOutcome outcome;
    qint64 done = 0;
    for (const CustomerBill &listed : bills) {
        if (!progress(done++, qint64(bills.size()))) {
            outcome.stopped = true;
            return outcome;
        }
        const qint64 customer = listed.customer.id.value_or(0);
        const auto bill = billOf(connection, customer, listed.period, options);
        if ((!bill && bill.error().gone) || (bill && !isAsListed(*bill, listed))) {
            outcome.changed.push_back(customer);
            continue;
        }
        if (bill && !taxDoubt(*bill).isEmpty()) {
            outcome.doubtful.push_back(customer);
            continue;
        }
        const base::Status issued = bill ? issue(*bill) : bill.status();
        if (issued || issued.error().gone)
            outcome.issued.push_back(customer);
        if (!issued) {
            outcome.failure = issued.error();
            outcome.failedFor = listed.customer.name();
            return outcome;
        }
    }
    return outcome;
}

base::Result<std::vector<BillTaxSlip>> bookBillTaxes(db::Connection &connection,
                                                     const std::vector<CustomerBill> &bills,
                                                     const BillOptions &options, const book::NewSlip &pattern)
{
    return db::atomically(connection, [&]() -> base::Result<std::vector<BillTaxSlip>> {
        std::vector<BillTaxSlip> slips;
        for (const CustomerBill &bill : bills) {
            auto slip = bookTax(connection, bill, options, pattern);
            if (!slip)
                return slip.error();
            slips.push_back(std::move(*slip));
        }
        return slips;
    });
}

base::Status cancelBillTaxes(db::Connection &connection, const std::vector<BillTaxSlip> &slips)
{
    return db::atomically(connection, [&]() -> base::Status {
        for (const BillTaxSlip &slip : slips) {
            if (const base::Status cancelled = cancelBillTax(connection, slip); !cancelled)
                return cancelled;
        }
        return {};
    });
}

QString billFileName(const CustomerBill &bill)
{
    return u"請求書_%1_"_s.arg(bill.customer.id.value_or(0)) +
           text::cutToBytes(text::fileNamePart(bill.customer.name()), longestName) +
           bill.period.to.toString(u"_yyyyMMdd"_s) + u".pdf"_s;
}

} // namespace reports

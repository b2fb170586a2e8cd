#include "reports/bills/bill.h"

#include "book/movements.h"
#include "book/slip_counts.h"
#include "book/tax_missing.h"
#include "db/transaction.h"
#include "reports/bills/bill_invoice.h"
#include "reports/period_check.h"
#include "text/numbers.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

book::Selection selectionOf(qint64 customer, const book::Days &days)
{
    return {.kinds = book::balanceKindsOf(book::Party::Customer),
            .counterpart = book::CounterpartKey(customer),
            .days = days};
}

BillRow rowOf(const book::Movement &movement)
{
    BillRow row;
    row.date = movement.date;
    row.slip = movement.slip;
    row.number = movement.number;
    row.name = movement.product;
    row.specification = movement.specification;
    row.quantity = movement.quantity;
    row.unit = movement.unit;
    row.price = movement.price;
    row.taxClass = movement.taxClass;
    row.taxRate = movement.taxRate;
    if (movement.kind == book::receipt) {
        row.kind = BillRowKind::Receipt;
        row.received = movement.amount;
    } else {
        row.kind = movement.isTax() ? BillRowKind::Tax : BillRowKind::Goods;
        row.delivered = movement.amount;
    }
    return row;
}

// A row of a carried balance, which shows what is owed alone.
BillRow carriedRow(BillRowKind kind)
{
    BillRow row;
    row.kind = kind;
    row.name = u"繰越"_s;
    return row;
}

BillRow carryForwardRow(const book::Movement &movement)
{
    BillRow row = carriedRow(BillRowKind::CarryForward);
    row.date = movement.date;
    row.slip = movement.slip;
    row.number = movement.number;
    return row;
}

// Writes the statement, line after line.
class Statement
{
public:
    Statement(const base::ExactSum &brought, const ReducedMarks &marks)
        : m_marks(marks)
        , m_balance(brought)
    {
        if (!brought.isZero())
            append(carriedRow(BillRowKind::Carried));
    }

    void add(const book::Movement &movement)
    {
        m_balance.add(movement.inBalance());
        if (movement.kind == book::receivableCarried) {
            // One row a slip, whatever lines it has.
            if (!m_rows.empty() && m_rows.back().slip == movement.slip)
                m_rows.back().balance = m_balance.value();
            else
                append(carryForwardRow(movement));
            return;
        }
        append(rowOf(movement));
        m_rows.back().mark = m_marks.of(movement);
    }

    std::vector<BillRow> take() { return std::move(m_rows); }

private:
    void append(BillRow row)
    {
        row.balance = m_balance.value();
        m_rows.push_back(std::move(row));
    }

    const ReducedMarks &m_marks;
    base::ExactSum m_balance;
    std::vector<BillRow> m_rows;
};

book::MovementSum sumOf(const book::Movement &movement)
{
    book::MovementSum sum;
    sum.kind = movement.kind;
    sum.isSince = true;
    sum.taxClass = movement.taxClass;
    sum.taxRate = movement.taxRate;
    sum.inclusive = movement.inclusive;
    sum.amount.add(movement.amount);
    if (movement.isTax())
        sum.tax = sum.amount;
    sum.lines = 1;
    return sum;
}

// What the customer owed before the period.
struct Before
{
    base::ExactSum balance;
    bool hasSlips = false;
};

base::Result<Before> readBefore(db::Connection &connection, qint64 customer, const QDate &day,
                                BillAccount &account)
{
    Before before;
    const base::Status read = book::sumMovements(connection, selectionOf(customer, book::Days::before(day)),
                                                 {}, base::unwatched, [&](const book::MovementSum &part) {
                                                     before.balance.add(part.inBalance());
                                                     before.hasSlips = true;
                                                     account.add(part);
                                                 });
    return read ? base::Result<Before>(before) : read.error();
}

void enter(Bill &bill, const std::vector<book::Movement> &movements, const base::ExactSum &brought)
{
    const ReducedMarks marks(movements);
    Statement statement(brought, marks);
    for (const book::Movement &movement : movements)
        statement.add(movement);
    bill.rows = statement.take();
    bill.reducedLegend = marks.legend();
    bill.noteNumbers = noteNumbersOf(movements);
}

// A customer whose tax comes with the bill is taxed at what the bill says, any other at what the notes said.
void enterTaxes(Bill &bill, const std::vector<book::Movement> &movements, const BillAccount &account,
                const BillOptions &options)
{
    const book::TaxClass taxClass = bill.customer.taxClass;
    const bool onBill = taxClass == book::TaxClass::OnBill;
    bill.sums = account.sums(taxClass, options);
    const BillRates rates = onBill ? account.rates(options) : BillRates(BillOptions());
    bill.rates = billInvoiceRates(movements, taxClass, rates, bill.sums, options);
    if (onBill)
        bill.outdatedRate = rates.outdated();
}

base::Status enterUntaxed(db::Connection &connection, Bill &bill)
{
    if (bill.customer.taxClass == book::TaxClass::OnBill)
        return {};
    auto untaxed = book::salesWithoutTax(connection, bill.customer.id.value_or(0), bill.period);
    if (untaxed)
        bill.untaxedSlips = std::move(*untaxed);
    return untaxed.status();
}

} // namespace

bool isSameBill(const Bill &one, const Bill &other)
{
    const auto amounts = [](const BillSums &sums) {
        return std::tuple(sums.previous, sums.sales, sums.received, sums.untaxed, sums.unbooked, sums.due);
    };
    return one.customer == other.customer && one.rows == other.rows &&
           amounts(one.sums) == amounts(other.sums);
}

base::Result<Bill> billOf(db::Connection &connection, qint64 customer, const book::Period &period,
                          const BillOptions &options)
{
    if (const base::Status good = checkPeriod(period); !good)
        return good.error();
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    auto known = billCustomer(connection, customer);
    if (!known)
        return known.error();
    BillAccount account;
    const auto before = readBefore(connection, customer, period.from, account);
    if (!before)
        return before.error();
    const auto found = book::movements(connection, selectionOf(customer, book::Days::within(period)));
    if (!found)
        return found.error();

    Bill bill;
    bill.customer = std::move(*known);
    bill.period = period;
    for (const book::Movement &movement : *found)
        account.add(sumOf(movement));
    bill.hasSlipsInPeriod = !found->empty();
    bill.hasSlips = before->hasSlips || bill.hasSlipsInPeriod;
    if (!bill.hasSlips) {
        const auto any = book::countSlips(connection, selectionOf(customer, book::Days::all()));
        if (!any)
            return any.error();
        bill.hasSlips = *any > 0;
    }
    enter(bill, *found, before->balance);
    enterTaxes(bill, *found, account, options);
    if (const base::Status entered = enterUntaxed(connection, bill); !entered)
        return entered.error();
    return bill;
}

QString taxDoubt(const Bill &bill)
{
    constexpr qsizetype mostNumbers = 5;
    if (bill.sums.due)
        return u"計上した消費税 %1 円が、期間の売上から計算した消費税 %2 円と違います。消費税の伝票を訂正してください。"_s
            .arg(text::formatAmount(bill.sums.tax()), text::formatAmount(*bill.sums.due));
    if (bill.untaxedSlips.isEmpty())
        return {};
    const QString others = bill.untaxedSlips.size() > mostNumbers
                               ? u" ほか %1 件"_s.arg(bill.untaxedSlips.size() - mostNumbers)
                               : QString();
    return u"消費税の行のない伝票があります（%1%2）。伝票を確かめてください。"_s.arg(
        bill.untaxedSlips.first(std::min(mostNumbers, bill.untaxedSlips.size())).join(u'、'), others);
}

} // namespace reports

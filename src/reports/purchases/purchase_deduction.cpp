#include "reports/purchases/purchase_deduction.h"

#include "book/deduction.h"
#include "text/dates.h"

#include <QStringList>

#include <map>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

// What is rounded together.
struct Group
{
    int percent;
    bool isReduced;
    std::optional<double> rate;
    book::Basis basis;

    auto operator<=>(const Group &) const = default;
};

using Groups = std::map<Group, base::ExactSum>;

// What is paid to a supplier without a registration includes the tax, however its papers show it
// (支払対価の額, 消費税法第30条): lines of tax count with the goods, unless they come with a bill.
void add(Groups &groups, const book::MovementSum &part, int percent, bool taxedOnBill)
{
    const auto taxClass = part.taxClass.value_or(book::GoodsTax::Standard);
    const bool isNet = taxedOnBill && !part.inclusive.value_or(false);
    base::ExactSum amount = part.amount;
    if (isNet)
        amount.add(part.tax.times(-1));
    groups[{percent, book::isReduced(taxClass), book::isTaxed(taxClass) ? part.taxRate : 0.0,
            isNet ? book::Basis::Net : book::Basis::Gross}]
        .add(amount);
}

std::optional<double> taxOf(const Groups &groups)
{
    double sum = 0;
    for (const auto &[group, amount] : groups) {
        if (amount.isZero())
            continue;
        const auto tax =
            group.rate ? book::deductibleTax(amount, group.basis, *group.rate, group.percent) : std::nullopt;
        if (!tax)
            return std::nullopt;
        sum += *tax;
    }
    return sum;
}

} // namespace

void PurchaseDeduction::add(const PurchaseDeduction &other)
{
    percents.insert(other.percents.begin(), other.percents.end());
    if (tax && other.tax)
        tax = *tax + *other.tax;
    else
        tax.reset();
}

QString PurchaseDeduction::shares() const
{
    QStringList shown;
    for (auto percent = percents.rbegin(); percent != percents.rend(); ++percent)
        shown << QString::number(*percent) + u'%';
    return shown.join(u'・');
}

base::Result<std::optional<PurchaseDeduction>> deductionOf(db::Connection &connection, qint64 id,
                                                           const book::Period &period,
                                                           const book::SupplierRegistration &registration,
                                                           bool taxedOnBill)
{
    Groups groups;
    PurchaseDeduction deduction;
    const base::Status read =
        book::sumMovements(connection,
                           {.kinds = {book::purchase},
                            .counterpart = book::CounterpartKey(id),
                            .days = book::Days::within(period)},
                           {.byRate = true, .byBasis = true, .byDay = true, .withTax = true}, base::unwatched,
                           [&](const book::MovementSum &part) {
                               const QDate day = text::parseDate(part.day).value_or(QDate());
                               const int percent = book::deductiblePercent(day);
                               if (part.lines == 0 || percent == 100 || !registration.isMissingOn(day))
                                   return;
                               deduction.percents.insert(percent);
                               add(groups, part, percent, taxedOnBill);
                           });
    if (!read)
        return read.error();
    if (deduction.percents.empty())
        return std::optional<PurchaseDeduction>();
    deduction.tax = taxOf(groups);
    return std::optional(deduction);
}

} // namespace reports

#include "reports/bills/bill_sums.h"

namespace reports
{

namespace
{

double difference(double one, double other)
{
    base::ExactSum sum;
    sum.add(one);
    sum.add(-other);
    return sum.value();
}

} // namespace

double BillSums::tax() const { return difference(sales, untaxed); }
double BillSums::carried() const { return difference(previous, received); }

double BillSums::billed(bool salesOnly) const { return salesOnly ? sales : difference(sales, -carried()); }

bool BillSums::isEmpty() const
{
    return previous == 0 && sales == 0 && received == 0 && untaxed == 0 && unbooked.value_or(0) == 0 &&
           !cannotTax;
}

// --- Rates ---

void BillRates::see(std::optional<book::GoodsTax> taxClass, std::optional<double> rate)
{
    if (!rate || taxClass)
        return;
    m_hasSecond = m_hasSecond || m_seen.value_or(*rate) != *rate;
    m_seen = rate;
}

bool BillRates::isOneRate() const { return m_byHand && !m_hasSecond; }

BillRate BillRates::of(std::optional<book::GoodsTax> taxClass, std::optional<double> rate) const
{
    const auto known = taxClass.value_or(book::GoodsTax::Standard);
    if (!book::isTaxed(known))
        return {known, 0.0};
    if ((!taxClass && isOneRate()) || !rate)
        rate = m_byHand;
    // Kept by hand, one rate is one for all goods.
    const bool isReduced = book::isReduced(known) && !(m_byHand && rate == m_byHand);
    return {isReduced ? book::GoodsTax::Food : book::GoodsTax::Standard, rate};
}

std::optional<double> BillRates::outdated() const
{
    return isOneRate() && m_seen && m_seen != m_byHand ? m_seen : std::nullopt;
}

// --- Sums ---

void BillAccount::add(const book::MovementSum &part)
{
    m_hasLinesInPeriod = m_hasLinesInPeriod || (part.isSince && part.lines > 0);
    if (part.kind == book::receipt && part.isSince)
        m_received.add(part.amount);
    else if (part.kind == book::sale && part.isSince)
        addSales(part);
    else // a carried balance raises what was brought into the period by its own amount, even within it
        m_previous.add(part.inBalance());
}

void BillAccount::addSales(const book::MovementSum &part)
{
    m_sales.add(part.amount);
    m_tax.add(part.tax);
    if (part.inclusive.value_or(false)) // the tax is in the price
        return;
    base::ExactSum goods = part.amount;
    goods.add(part.tax.times(-1));
    m_net[{part.taxClass, part.taxRate}].add(goods);
}

BillRates BillAccount::rates(const BillOptions &options) const
{
    BillRates rates(options);
    for (const auto &[rate, amount] : m_net) {
        if (!amount.isZero())
            rates.see(rate.first, rate.second);
    }
    return rates;
}

BillSums BillAccount::sums(book::TaxClass taxClass, const BillOptions &options) const
{
    base::ExactSum untaxed = m_sales;
    untaxed.add(m_tax.times(-1));
    BillSums sums{m_previous.value(), m_sales.value(), m_received.value(), untaxed.value()};
    if (taxClass == book::TaxClass::OnBill)
        m_tax.isZero() ? computeUnbooked(options, sums) : compareBooked(options, sums);
    return sums;
}

// None where a rate is missing, or an amount is no number.
std::optional<std::vector<book::RateTax>> BillAccount::taxes(const BillRates &rates) const
{
    std::vector<book::TaxableAmount> amounts;
    for (const auto &[own, amount] : m_net) {
        const BillRate rate = rates.of(own.first, own.second);
        if (amount.isZero())
            continue;
        if (!rate.rate)
            return std::nullopt;
        amounts.push_back({amount.value(), *rate.rate, rate.taxClass});
    }
    auto taxes = book::taxesByRate(amounts, book::Basis::Net);
    return taxes ? std::optional(std::move(*taxes)) : std::nullopt;
}

void BillAccount::computeUnbooked(const BillOptions &options, BillSums &sums) const
{
    auto taxes = this->taxes(rates(options));
    sums.cannotTax = !taxes;
    if (!taxes)
        return;
    sums.unbooked = book::sumOf(*taxes);
    sums.unbookedRates = std::move(*taxes);
}

// A shop that keeps one rate by hand may have booked a former one: that of the slips is right as well.
void BillAccount::compareBooked(const BillOptions &options, BillSums &sums) const
{
    const auto kept = taxes(rates(options));
    const auto own = taxes(rates(BillOptions()));
    const double booked = m_tax.value();
    const bool agrees =
        (!kept && !own) || (kept && book::sumOf(*kept) == booked) || (own && book::sumOf(*own) == booked);
    if (!agrees)
        sums.due = book::sumOf(kept ? *kept : *own);
}

} // namespace reports

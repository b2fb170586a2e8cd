#include "reports/bills/bill_invoice.h"

#include "book/tax_terms.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

struct Booked
{
    base::ExactSum net;
    base::ExactSum tax;
};

struct Included
{
    double gross = 0;
    double tax = 0;
};

// Goes through the sales of a period slip by slip.
class InvoiceRates
{
public:
    InvoiceRates(book::TaxClass taxClass, const BillRates &rates, const BillOptions &options)
        : m_taxClass(taxClass)
        , m_rates(rates)
        , m_options(options)
    {}

    void add(const std::vector<book::Movement> &movements)
    {
        for (auto first = movements.begin(); first != movements.end();) {
            const auto isOther = [slip = first->slip](const book::Movement &one) { return one.slip != slip; };
            const auto next = std::find_if(first, movements.end(), isOther);
            if (first->kind == book::sale)
                addSlip({first, next});
            first = next;
        }
        finishIncluded();
    }

    [[nodiscard]] std::vector<slips::InvoiceRate> values(const BillSums &sums) const
    {
        if (m_isUnclear || sums.cannotTax)
            return {};
        std::vector<slips::InvoiceRate> values;
        for (const auto &[rate, booked] : m_booked)
            addBooked(values, rate, booked, sums);
        for (const auto &[rate, included] : m_included) {
            const QString basis = book::isTaxed(rate.taxClass) ? u"税込"_s : QString();
            values.push_back(
                {book::rateName(rate.taxClass, *rate.rate) + basis, included.gross, included.tax});
        }
        return values;
    }

private:
    using Lines = std::vector<book::Movement>;

    // Where nobody knows whether its prices include the tax, they do for a customer whose prices do, unless
    // the tax was added.
    [[nodiscard]] bool includesTax(const Lines &slip) const
    {
        if (slip.front().inclusive)
            return *slip.front().inclusive;
        return m_taxClass == book::TaxClass::Included &&
               std::ranges::none_of(slip, [](const book::Movement &line) { return line.isTax(); });
    }

    void addSlip(const Lines &slip)
    {
        const bool includes = includesTax(slip);
        for (const book::Movement &line : slip) {
            const BillRate rate = (includes ? m_own : m_rates).of(line.taxClass, line.taxRate);
            m_isUnclear = m_isUnclear || !rate.rate;
            if (m_isUnclear)
                return;
            if (includes)
                m_gross.push_back({line.amount, *rate.rate, rate.taxClass});
            else
                (line.isTax() ? m_booked[rate].tax : m_booked[rate].net).add(line.amount);
        }
        if (!m_options.includedOnBill) // each note was rounded
            finishIncluded();
    }

    void finishIncluded()
    {
        const auto taxes = book::taxesByRate(m_gross, book::Basis::Gross);
        m_isUnclear = m_isUnclear || !taxes;
        m_gross.clear();
        if (!taxes)
            return;
        for (const book::RateTax &tax : *taxes) {
            Included &included = m_included[{tax.taxClass, tax.rate}];
            included.gross += tax.gross;
            included.tax += tax.tax;
        }
    }

    static void addBooked(std::vector<slips::InvoiceRate> &values, const BillRate &rate, const Booked &booked,
                          const BillSums &sums)
    {
        double tax = booked.tax.value();
        for (const book::RateTax &unbooked : sums.unbookedRates) {
            if (unbooked.taxClass == rate.taxClass && unbooked.rate == rate.rate)
                tax = unbooked.tax;
        }
        if (!booked.net.isZero() || tax != 0)
            values.push_back({book::rateName(rate.taxClass, *rate.rate), booked.net.value(), tax});
    }

    const book::TaxClass m_taxClass;
    const BillRates &m_rates;
    const BillRates m_own{BillOptions()}; // of prices: what they include does not change
    const BillOptions &m_options;
    std::map<BillRate, Booked> m_booked;
    std::map<BillRate, Included> m_included;
    std::vector<book::TaxableAmount> m_gross; // not rounded yet
    bool m_isUnclear = false;
};

bool isGoodsSold(const book::Movement &movement) { return movement.kind == book::sale && !movement.isTax(); }

book::SlipLine slipLine(const book::Movement &movement)
{
    book::SlipLine line;
    line.product = movement.product;
    line.taxClass = movement.taxClass;
    line.taxRate = movement.taxRate;
    return line;
}

} // namespace

std::vector<slips::InvoiceRate> billInvoiceRates(const std::vector<book::Movement> &movements,
                                                 book::TaxClass taxClass, const BillRates &rates,
                                                 const BillSums &sums, const BillOptions &options)
{
    InvoiceRates invoice(taxClass, rates, options);
    invoice.add(movements);
    return invoice.values(sums);
}

ReducedMarks::ReducedMarks(const std::vector<book::Movement> &movements)
{
    for (const book::Movement &movement : movements) {
        if (isGoodsSold(movement) && movement.taxClass && book::isReduced(*movement.taxClass))
            m_lines.lines.push_back(slipLine(movement));
    }
}

QString ReducedMarks::of(const book::Movement &movement) const
{
    return isGoodsSold(movement) ? slips::reducedMark(slipLine(movement), m_lines) : QString();
}

QString ReducedMarks::legend() const { return slips::reducedLegend(m_lines); }

QStringList noteNumbersOf(const std::vector<book::Movement> &movements)
{
    QStringList numbers;
    qint64 last = 0;
    for (const book::Movement &movement : movements) {
        if (isGoodsSold(movement) && movement.slip != last) {
            numbers << movement.number;
            last = movement.slip;
        }
    }
    return numbers;
}

} // namespace reports

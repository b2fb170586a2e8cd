#include "book/printed_slip.h"

#include "book/tax.h"
#include "book/tax_terms.h"

#include <algorithm>
#include <numeric>

namespace book
{

namespace
{

double sumOf(const std::vector<SlipLine> &lines)
{
    return std::accumulate(lines.begin(), lines.end(), 0.0,
                           [](double sum, const SlipLine &line) { return sum + line.amount; });
}

TaxableAmount taxable(const SlipLine &line, double rate)
{
    return {line.amount, line.taxRate.value_or(rate), line.taxClass.value_or(GoodsTax::Standard)};
}

} // namespace

bool hasTaxLine(const Slip &slip)
{
    return std::any_of(slip.lines.begin(), slip.lines.end(),
                       [](const SlipLine &line) { return line.isTax(); });
}

std::vector<TaxableAmount> taxableGoods(const std::vector<SlipLine> &lines, double rate)
{
    std::vector<TaxableAmount> goods;
    for (const SlipLine &line : lines) {
        if (!line.isTax())
            goods.push_back(taxable(line, rate));
    }
    return goods;
}

std::vector<TaxableAmount> taxableAll(const std::vector<SlipLine> &lines, double rate)
{
    std::vector<TaxableAmount> amounts;
    for (const SlipLine &line : lines)
        amounts.push_back(taxable(line, rate));
    return amounts;
}

std::vector<SlipLine> taxLinesOf(const std::vector<RateTax> &taxes, double slipRate)
{
    const bool isOwn = isSlipsOwn(taxes, slipRate);
    const bool areSeveral =
        std::ranges::count_if(taxes, [](const RateTax &tax) { return isTaxed(tax.taxClass); }) > 1;
    std::vector<SlipLine> lines;
    for (const RateTax &tax : taxes) {
        if (tax.tax == 0)
            continue;
        SlipLine line;
        line.product = QString::fromUtf16(taxLineName);
        line.amount = tax.tax;
        if (!isOwn) {
            line.taxClass = tax.taxClass;
            line.taxRate = tax.rate;
        }
        if (areSeveral)
            line.specification = rateName(tax.taxClass, tax.rate);
        lines.push_back(line);
    }
    return lines;
}

base::Result<std::vector<SlipLine>> taxLinesFor(const std::vector<SlipLine> &goods, double rate,
                                                double slipRate)
{
    const auto taxes = taxesByRate(taxableGoods(goods, rate), Basis::Net);
    if (!taxes)
        return taxes.error();
    return taxLinesOf(*taxes, slipRate);
}

base::Result<PrintedSlip> taxedForPrint(Slip slip, const PrintedTax &tax)
{
    const double rate = tax.closing ? tax.closing->on(slip.date).value_or(slip.taxRate) : slip.taxRate;
    PrintedSlip printed;
    printed.rate = rate;
    printed.total = sumOf(slip.lines);
    if (tax.inclusive) {
        const auto included = taxOf(taxableAll(slip.lines, rate), Basis::Gross);
        if (!included)
            return included.error();
        printed.includedTax = *included;
    } else if (tax.closing && !hasTaxLine(slip) && taxIsAdded(slip.taxClass, tax.inclusive)) {
        const auto taxes = taxLinesFor(slip.lines, rate, slip.taxRate);
        if (!taxes)
            return taxes.error();
        slip.lines.insert(slip.lines.end(), taxes->begin(), taxes->end());
        printed.total += sumOf(*taxes);
    }
    printed.slip = std::move(slip);
    return printed;
}

} // namespace book

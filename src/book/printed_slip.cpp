#include "book/printed_slip.h"

#include "book/tax.h"

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

} // namespace

bool hasTaxLine(const Slip &slip)
{
    return std::any_of(slip.lines.begin(), slip.lines.end(),
                       [](const SlipLine &line) { return line.isTax(); });
}

base::Result<PrintedSlip> taxedForPrint(Slip slip, const PrintedTax &tax)
{
    PrintedSlip printed;
    printed.total = sumOf(slip.lines);
    if (tax.inclusive) {
        const auto included = includedTax(printed.total, tax.closingRate.value_or(slip.taxRate));
        if (!included)
            return included.error();
        printed.includedTax = *included;
    } else if (tax.closingRate && !hasTaxLine(slip) && taxIsAdded(slip.taxClass, tax.inclusive)) {
        const auto added = exclusiveTax(printed.total, *tax.closingRate);
        if (!added)
            return added.error();
        if (*added != 0) {
            SlipLine line;
            line.product = QString::fromUtf16(taxLineName);
            line.amount = *added;
            slip.lines.push_back(line);
            printed.total += *added;
        }
    }
    printed.slip = std::move(slip);
    return printed;
}

} // namespace book

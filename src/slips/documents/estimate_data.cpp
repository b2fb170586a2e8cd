#include "book/tax.h"
#include "masters/registration_number.h"
#include "slips/documents/estimate.h"

namespace slips
{

namespace
{

EstimateTax taxOf(const book::PrintedSlip &printed, bool open)
{
    if (book::hasTaxLine(printed.slip))
        return EstimateTax::Added;
    if (printed.includedTax)
        return EstimateTax::Included;
    if (printed.slip.taxClass == book::TaxClass::OnBill)
        return EstimateTax::Separate;
    // The tax of an open one came out as nothing. One that was left without its tax line may have been meant
    // either way, and the customer must not be told the wrong one.
    return open ? EstimateTax::Added : EstimateTax::Untold;
}

// An estimate is no invoice, whoever makes it; of one rate it has always told the tax in one sum.
base::Status addRates(EstimateData &data, const book::PrintedSlip &printed)
{
    data.reducedLegend = reducedLegend(printed.slip);
    if (!masters::isRegistrationNumber(data.sender.registrationNumber))
        return {};
    auto rates = invoiceRates(printed);
    if (!rates)
        return rates.error();
    if (rates->size() > 1 || !data.reducedLegend.isEmpty())
        data.rates = std::move(*rates);
    return {};
}

} // namespace

base::Result<EstimateData> readEstimate(db::Connection &connection, qint64 id, const EstimateReading &reading)
{
    const auto slip = book::readSlip(connection, id, book::Party::Customer);
    if (!slip)
        return slip.error();
    const auto company = masters::ownCompany(connection);
    if (!company)
        return company.error();
    const bool inclusive =
        !book::hasTaxLine(*slip) && reading.inclusive.value_or(slip->taxClass == book::TaxClass::Included);
    auto printed = book::taxedForPrint(*slip, {inclusive, reading.closing});
    if (!printed)
        return printed.error();

    EstimateData data;
    data.sender = company->value_or(masters::OwnCompany());
    data.taxed = taxOf(*printed, reading.closing.has_value());
    if (const base::Status added = addRates(data, *printed); !added)
        return added.error();
    data.slip = std::move(printed->slip);
    if (printed->includedTax)
        data.tax = *printed->includedTax;
    for (const book::SlipLine &line : data.slip.lines)
        (line.isTax() ? data.tax : data.goods) += line.amount;
    std::erase_if(data.slip.lines, [](const book::SlipLine &line) { return line.isTax(); });
    return data;
}

} // namespace slips

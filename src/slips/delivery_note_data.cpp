#include "slips/delivery_note.h"
#include "slips/tax.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

double sumOf(const std::vector<SlipLine> &lines)
{
    return std::accumulate(lines.begin(), lines.end(), 0.0,
                           [](double sum, const SlipLine &line) { return sum + line.amount; });
}

bool hasTaxLine(const Slip &slip)
{
    return std::any_of(slip.lines.begin(), slip.lines.end(),
                       [](const SlipLine &line) { return line.isTax(); });
}

db::Status addTax(DeliveryNoteData &note, const DeliveryNoteOptions &options)
{
    Slip &slip = note.slip;
    note.total = sumOf(slip.lines);
    if (options.inclusive) {
        const db::Result<double> included =
            includedTax(note.total, options.closingRate.value_or(slip.taxRate));
        if (!included)
            return included.error();
        note.includedTax = *included;
        return {};
    }
    if (!options.closingRate || hasTaxLine(slip) || !taxIsAdded(slip.taxClass, options.inclusive))
        return {};
    const db::Result<double> tax = exclusiveTax(note.total, *options.closingRate);
    if (!tax)
        return tax.error();
    if (*tax != 0) {
        SlipLine line;
        line.product = QString::fromUtf16(taxLineName);
        line.amount = *tax;
        slip.lines.push_back(line);
        note.total += *tax;
    }
    return {};
}

} // namespace

db::Result<DeliveryNoteData> readDeliveryNote(db::Connection &connection, qint64 id,
                                              const DeliveryNoteOptions &options)
{
    const auto slip = readSlip(connection, id, Party::Customer);
    if (!slip)
        return slip.error();
    const auto company = masters::ownCompany(connection);
    if (!company)
        return company.error();
    DeliveryNoteData note;
    note.slip = *slip;
    note.sender = company->value_or(masters::OwnCompany());
    note.companyName = options.companyName;
    note.memo = options.memo;
    note.offsets = options.offsets;
    if (const db::Status taxed = addTax(note, options); !taxed)
        return taxed.error();
    return note;
}

} // namespace slips

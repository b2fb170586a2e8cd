#include "book/printed_slip.h"
#include "masters/registration_number.h"
#include "slips/documents/delivery_note.h"

namespace slips
{

base::Result<DeliveryNoteData> readDeliveryNote(db::Connection &connection, qint64 id,
                                                const DeliveryNoteOptions &options)
{
    const auto slip = book::readSlip(connection, id, book::Party::Customer);
    if (!slip)
        return slip.error();
    const auto company = masters::ownCompany(connection);
    if (!company)
        return company.error();
    auto printed = book::taxedForPrint(*slip, {options.inclusive, options.closing});
    if (!printed)
        return printed.error();
    DeliveryNoteData note;
    note.sender = company->value_or(masters::OwnCompany());
    if (masters::isRegistrationNumber(note.sender.registrationNumber)) {
        auto rates = invoiceRates(*printed);
        if (!rates)
            return rates.error();
        note.rates = std::move(*rates);
    }
    note.reducedLegend = reducedLegend(printed->slip, printed->rate);
    note.slip = std::move(printed->slip);
    note.total = printed->total;
    note.includedTax = printed->includedTax;
    note.companyName = options.companyName;
    note.memo = options.memo;
    note.offsets = options.offsets;
    return note;
}

} // namespace slips

#include "book/printed_slip.h"
#include "masters/registration_number.h"
#include "slips/documents/delivery_note.h"

namespace slips
{

namespace
{

base::Status addInvoice(db::Connection &connection, const book::PrintedSlip &printed, DeliveryNoteData &note)
{
    auto rates = invoiceRates(printed);
    const auto original = book::originalOf(connection, printed.slip.id);
    if (!rates || !original)
        return rates ? original.error() : rates.error();
    note.rates = std::move(*rates);
    if (note.rates.empty())
        return {};
    auto returned = returnNotices(printed, *original);
    if (returned)
        note.returned = std::move(*returned);
    return returned.status();
}

} // namespace

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
    const bool isInvoice = masters::isRegistrationNumber(note.sender.registrationNumber) &&
                           !(printed->includedTax && options.includedOnBill);
    if (isInvoice) {
        if (const base::Status added = addInvoice(connection, *printed, note); !added)
            return added.error();
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

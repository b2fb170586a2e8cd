#include "book/printed_slip.h"
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
    note.slip = std::move(printed->slip);
    note.total = printed->total;
    note.includedTax = printed->includedTax;
    note.sender = company->value_or(masters::OwnCompany());
    note.companyName = options.companyName;
    note.memo = options.memo;
    note.offsets = options.offsets;
    return note;
}

} // namespace slips

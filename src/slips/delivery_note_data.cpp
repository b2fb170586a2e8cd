#include "slips/delivery_note.h"
#include "slips/printed_slip.h"

namespace slips
{

db::Result<DeliveryNoteData> readDeliveryNote(db::Connection &connection, qint64 id,
                                              const DeliveryNoteOptions &options)
{
    const auto slip = readSlip(connection, id, Party::Customer);
    if (!slip)
        return slip.error();
    const auto company = masters::ownCompany(connection);
    if (!company)
        return company.error();
    auto printed = taxedForPrint(*slip, {options.inclusive, options.closingRate});
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

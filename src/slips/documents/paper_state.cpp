#include "slips/documents/paper_state.h"

#include "book/stored_values.h"

namespace slips
{

bool PaperState::operator==(const PaperState &other) const
{
    return slip == other.slip && book::isSameNumber(total, other.total) &&
           book::isSameNumber(includedTax, other.includedTax) && remarks == other.remarks;
}

base::Result<PaperState> paperState(db::Connection &connection, qint64 id, const book::PrintedTax &tax,
                                    const QString &remarks)
{
    const auto slip = book::readSlip(connection, id, book::Party::Customer);
    if (!slip)
        return slip.error();
    auto printed = book::taxedForPrint(*slip, tax);
    if (!printed)
        return printed.error();
    return PaperState{std::move(printed->slip), printed->total, printed->includedTax, remarks};
}

} // namespace slips

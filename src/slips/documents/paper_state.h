#pragma once

#include "book/printed_slip.h"
#include "db/connection.h"

namespace slips
{

/// What a slip's paper says. Two that are equal say the same, so that a slip that was changed after its paper
/// was printed can be told from one that was not.
struct PaperState
{
    book::Slip slip; // with the tax line, where one is due
    double total = 0;
    std::optional<double> includedTax;
    QString remarks;

    bool operator==(const PaperState &other) const;
};

/// That of the customer's slip \a id as the file has it. Closing it with the same \a tax makes no difference.
/// \a remarks: what the screen adds to it.
base::Result<PaperState> paperState(db::Connection &connection, qint64 id, const book::PrintedTax &tax,
                                    const QString &remarks);

} // namespace slips

#pragma once

#include "book/movement_sums.h"

/// What \a counterpart owes us (a customer) or we owe it (a supplier), yen, over all its slips. A book that
/// cannot be read ends the program.
inline double balanceOf(db::Connection &connection, book::Party party, qint64 counterpart)
{
    base::ExactSum sum;
    const base::Status summed = book::sumMovements(
        connection, {.kinds = book::balanceKindsOf(party), .counterpart = counterpart}, {}, base::unwatched,
        [&sum](const book::MovementSum &part) { sum.add(part.inBalance()); });
    if (!summed)
        qFatal("%s", qPrintable(summed.error().text));
    return sum.value();
}

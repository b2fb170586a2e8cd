#pragma once

#include "base/result.h"

#include <QString>

namespace db
{
class Connection;
}

// The carriers' numbers of parcels (送り状番号).
namespace shipping
{

/// A carrier's number as it is kept: half width, without blanks, and without the hyphens between groups of
/// digits. A barcode reader sends the letters that begin and end a code along (A to D): they are no part of
/// it.
QString storedTracking(const QString &typed);

/// What is to be looked at again in a stored number: a sentence, empty where there is nothing. Of the twelve
/// digits that the carriers print, the last one is what the eleven before it leave when divided by 7.
QString trackingDoubt(const QString &number);

/// The other shipment that has \a number, as when the same slip was read twice; 0: none.
base::Result<qint64> otherOfNumber(db::Connection &connection, const QString &number, qint64 id);

/// Writes \a number to the shipment \a id, whose number was \a before when it was read; the rest of its row
/// stays as the file has it. The error is `changed` where it has another one by now, and `gone` where the
/// shipment is not in the history any more.
base::Status saveTracking(db::Connection &connection, qint64 id, const QString &before,
                          const QString &number);

} // namespace shipping

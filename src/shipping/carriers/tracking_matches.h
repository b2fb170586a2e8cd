#pragma once

#include "db/connection.h"
#include "shipping/carriers/tracking_columns.h"
#include "shipping/slips/shipment.h"

namespace shipping
{

/// The table in a carrier's answer; \a own is the shop's own file, which is none. Fails for what is no such
/// table, with words that say what it is.
base::Result<registers::ImportTable> readTrackingFile(const QString &fileName, const QString &own,
                                                      const base::Progress &progress);

enum class TrackingState {
    New,      // the shipment has no number yet
    Same,     // it has this one
    Differs,  // it has another one
    Unknown,  // no shipment is meant
    Unusable, // the row has no number, or none of a parcel
};

QString nameOf(TrackingState state);

/// A row of a carrier's answer, and the shipment that it means.
struct TrackingMatch
{
    int line = 0; // of the file
    QString management;
    QString number; // digits alone; of an unusable one as it is written
    QString consignee;
    TrackingState state = TrackingState::Unusable;
    std::optional<Shipment> shipment{};
    bool ticked = false;
    QString remark{}; // what speaks against taking it; empty: nothing

    [[nodiscard]] bool canBeTaken() const
    {
        return state == TrackingState::New || state == TrackingState::Differs;
    }
};

/// The rows of \a table with the shipments they mean, by numbers with one of \a prefixes. Ticked is what is
/// new and beyond doubt: a shipment that was exported, once in the file, to a consignee of that name, with a
/// number that no other one has.
base::Result<std::vector<TrackingMatch>>
matchTracking(db::Connection &connection, const registers::ImportTable &table, const TrackingColumns &columns,
              const QStringList &prefixes, const base::Progress &progress);

/// Writes the numbers of the ticked rows into their shipments, all or none. Fails where one has been changed
/// since it was matched (`changed`) or is gone. \return how many
base::Result<int> storeTracking(db::Connection &connection, const std::vector<TrackingMatch> &matches,
                                const base::Progress &progress);

} // namespace shipping

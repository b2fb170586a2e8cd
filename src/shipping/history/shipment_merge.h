#pragma once

#include "shipping/slips/shipment.h"

#include <QStringList>

// What was typed into a shipment, and what another program made of it meanwhile.
namespace shipping
{

struct MergedShipment
{
    Shipment mine;         // theirs with all that was typed here, ready to be stored over it
    QStringList sentences; // a field in which they differ in each: who wrote what
};

/// \a before: the row as it was read; \a typed: what was made of it here; \a theirs: the row as it is now.
MergedShipment mergeShipments(const Shipment &before, const Shipment &typed, const Shipment &theirs);

} // namespace shipping

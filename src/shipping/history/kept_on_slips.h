#pragma once

#include "shipping/slips/ShipmentPanel.h"

namespace shipping
{

/// Shows the codes and remarks that a screen kept under \a keys in \a panel, which shows \a shipment, where
/// that was printed by an older program, whose rows hold none. Nothing counts as typed by it.
/// \return whether it was
bool showKeptOnOldSlip(ShipmentPanel &panel, const Shipment &shipment, const KeptKeys &keys);

} // namespace shipping

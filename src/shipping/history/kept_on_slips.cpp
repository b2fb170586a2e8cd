#include "shipping/history/kept_on_slips.h"

namespace shipping
{

bool showKeptOnOldSlip(ShipmentPanel &panel, const Shipment &shipment, const KeptKeys &keys)
{
    const bool isBare = shipment.memo1.isEmpty() && shipment.memo2.isEmpty() &&
                        shipment.customerCode.isEmpty() && shipment.officeCode.isEmpty();
    // Every slip that this program prints has its day in the row.
    if (shipment.printed.isValid() || !isBare)
        return false;
    panel.readKept(keys);
    panel.markUnchanged();
    return true;
}

} // namespace shipping

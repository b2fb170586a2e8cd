#pragma once

#include "shipping/carriers/carrier_settings.h"
#include "shipping/slips/shipment.h"

namespace shipping
{

/// A parcel on its way into a carrier's file.
struct CarrierParcel
{
    Shipment shipment;
    QDate shipDay;                       // on which the carrier gets it
    bool collected = false;              // the price is paid on delivery
    std::optional<double> includedTax{}; // yen, in the price; none: not known
};

/// Why \a parcel hardly goes to the carrier of \a program now, in a word: its form is another carrier's, or
/// it was to leave weeks ago. Empty where it may well go.
QString exportDoubt(CarrierProgram program, const CarrierParcel &parcel);

/// What of a shipment a field of the file comes from, for the clerk to mend it there.
enum class ShipmentField {
    None, // nothing of it
    Settings,
    Method,
    Delivery,
    TimeSlot,
    Cooling,
    Parcels,
    ConsigneeName,
    ConsigneeZip,
    ConsigneeAddress,
    ConsigneeTel,
    SenderName,
    SenderZip,
    SenderAddress,
    SenderTel,
    Goods,
    Price,
    Memo,
};

/// What the clerk mends: "お届け先の住所" on two lines, or one of a list.
struct MendableField
{
    QString caption;
    QStringList lines;        // as they stand in the shipment
    QStringList choices = {}; // empty: whatever is typed
};

/// \a field of \a shipment; without a caption where nothing of it can be mended.
MendableField mendable(const Shipment &shipment, ShipmentField field);

/// \a shipment with \a lines in \a field. Fails for what is no date, amount or number of parcels.
base::Result<Shipment> mended(const Shipment &shipment, ShipmentField field, const QStringList &lines);

} // namespace shipping

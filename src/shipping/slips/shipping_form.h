#pragma once

#include "printing/forms/form_values.h"
#include "shipping/slips/shipment.h"

// What the slip of a shipment says, and the layout files that tell where.
namespace shipping
{

/// The layout file of \a form, one of shippingForms(); empty for any other. The slip of a parcel that is paid
/// on delivery is laid out as one that is not.
QString slipLayout(const QString &form);

/// Whether \a form is a carrier's, on the paper that the printer dialog declares; the others are on A4 paper.
bool isCarriersForm(const QString &form);

/// Width and height of the carriers' forms as they are read, millimetres.
inline constexpr double carriersFormWidth = 230;
inline constexpr double carriersFormHeight = 114.4;

/// What a layout may show.
const printing::FormItems &slipItems();

/// Items that stand in place of others and never beside them.
QStringList slipItemsOfOtherCases();

/// Their values. \a deliveryNotice: the sender wants to be told of the delivery.
printing::FormValues slipValues(const Shipment &shipment, bool deliveryNotice);

/// A postal code as carriers' forms have it: its seven digits with a blank between them, the hyphen left out;
/// one that cannot be read as it was typed.
QString spreadPostalCode(const QString &typed);

/// Month and day of \a day, two full-width digits each; empty for none.
QString spreadMonthAndDay(const QDate &day);

/// "様", or "御中" for a firm without a person; empty where the name has an honorific already.
QString honorificOf(const Party &party);

/// What the clerk has to look at before \a shipment is printed, a sentence each.
QStringList slipRemarks(const Shipment &shipment);

} // namespace shipping

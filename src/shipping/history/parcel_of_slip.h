#pragma once

#include "base/result.h"
#include "book/slip_reader.h"
#include "shipping/slips/shipment.h"

// From a sale to its parcel.
namespace shipping
{

/// Half-width characters that the goods of a slip are described in: carriers' programs take no more.
inline constexpr int goodsWidth = 50;

/// What is in the parcel of \a lines: the first of the goods, and "ほか" where there are others; what is too
/// long for goodsWidth is cut. Taxes, discounts and what came back are not sent.
QString goodsInWords(const std::vector<book::SlipLine> &lines);

/// The parcel of the sale \a slip to its customer, accepted on \a today, as the entry screen begins with it:
/// consignee, goods and remarks. The sender stays empty, for the shop itself. What the slip comes to is its
/// price, unless its tax is still to come on a bill: a parcel paid on delivery must not be paid short.
base::Result<Shipment> parcelOfSlip(db::Connection &connection, qint64 slip, const QDate &today);

/// The parcels that went out for the sale \a slip, one in a line: "発送　2026/04/01　宅急便　415624751765".
/// Empty where there are none; no more than a few are named.
base::Result<QString> parcelsInWords(db::Connection &connection, qint64 slip);

} // namespace shipping

#pragma once

#include "base/result.h"
#include "db/connection.h"
#include "shipping/slips/shipment.h"

// Shipments in the database: one row of 発送マスター a printed slip.
namespace shipping
{

/// The columns that shipmentOf() takes, for a SELECT.
QString shipmentColumns();

/// The shipment in a row of shipmentColumns(). A value that is none of its kind counts as empty.
Shipment shipmentOf(const QVariantList &row);

/// The values of \a shipment in the order of shipmentColumns(), behind 発送ID and 版.
QVariantList shipmentValues(const Shipment &shipment);

/// The shipment \a id. The error is `gone` when it is not in the history any more.
base::Result<Shipment> readShipment(db::Connection &connection, qint64 id);

/// What keeps a slip from being printed: a category that is not registered, a consignee without postal code.
base::Status checkPrintable(db::Connection &connection, const Shipment &shipment);

/// Adds \a shipment to the history, under a key that is one more than the highest. \return that key
base::Result<qint64> addShipment(db::Connection &connection, const Shipment &shipment);

/// Writes \a shipment over its row. Fails, and changes nothing, where the row is `gone`, or was `changed`
/// since it was read.
base::Status changeShipment(db::Connection &connection, const Shipment &shipment);

/// Deletes its row. Fails as changeShipment().
base::Status removeShipment(db::Connection &connection, const Shipment &shipment);

} // namespace shipping

#pragma once

#include "book/tax_rates.h"
#include "db/connection.h"
#include "shipping/carriers/carrier_file.h"

namespace shipping
{

/// Which shipments of the history go to a carrier.
struct CarrierQuery
{
    CarrierProgram program = CarrierProgram::B2Cloud;
    QDate from; // 受付日, both included
    QDate to;
    bool withExported = false;   // those too that were written to a file before
    bool withOtherForms = false; // labels and tags, which are no carrier's
};

/// More than are shipped in some weeks; a longer list is a period mistyped.
inline constexpr int mostListed = 5000;

/// In the order of their keys. Fails beyond mostListed.
base::Result<std::vector<Shipment>> shipmentsFor(db::Connection &connection, const CarrierQuery &query);

/// Those of \a ids that are in the history, in their order.
base::Result<std::vector<Shipment>> shipmentsOf(db::Connection &connection, const std::vector<qint64> &ids);

/// How the tax in a price is known.
struct TaxSource
{
    book::TaxRates rates;
    bool byTable = false; // the rate depends on the goods then, which must be a product of the register
};

/// \a shipment as a parcel of \a shipDay, collected where its form says so.
base::Result<CarrierParcel> parcelOf(db::Connection &connection, const Shipment &shipment,
                                     const QDate &shipDay, const TaxSource &taxes);

/// Notes that \a parcels were written to a file on \a day, all or none. Nothing else of their rows changes,
/// whatever another program did to them meanwhile.
base::Status markExported(db::Connection &connection, const std::vector<CarrierParcel> &parcels,
                          const QDate &day);

/// Stores \a shipments as they are now, all or none; as changeShipment().
base::Status changeShipments(db::Connection &connection, const std::vector<Shipment> &shipments);

/// Those of \a shipments whose rows have changed or are gone since they were read: 発送ID.
base::Result<std::vector<qint64>> changedSince(db::Connection &connection,
                                               const std::vector<CarrierParcel> &parcels);

} // namespace shipping

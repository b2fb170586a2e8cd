#pragma once

#include "base/report.h"
#include "base/result.h"
#include "shipping/slips/shipment.h"

#include <vector>

namespace db
{
class Connection;
}

namespace shipping
{

/// Whom parcels of the customer \a id, named \a sender, went to, each one once by the shipment that was the
/// last: the newest first. Shipments of old files, which know no customer, are his by name and telephone
/// number. No more than a few thousand are looked at.
base::Result<std::vector<Shipment>> sentConsignees(db::Connection &connection, qint64 id,
                                                   const Party &sender);

/// As a list of a screen; a row leads to the place of its shipment among \a sent.
base::Report sentReport(const std::vector<Shipment> &sent);

} // namespace shipping

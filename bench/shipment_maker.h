#pragma once

#include "base/result.h"

namespace bench
{

/// Has the history of the shop \a fileName hold \a count shipments, of ten years up to 2026-03-31, each from
/// one customer to another, gifts in their seasons among them. Those that are there stay. The same customers
/// and numbers give the same rows.
base::Status addShipments(const QString &fileName, int count);

} // namespace bench

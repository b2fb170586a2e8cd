#pragma once

#include "measuring.h"
#include "table_reporter.h"

namespace bench
{

/// Registers a search of the history by names among a million shipments, and slips in bulk, against SQLite
/// and a painter that does nothing else.
void registerShipping(const Shops &shops, std::vector<Row> &rows);

} // namespace bench

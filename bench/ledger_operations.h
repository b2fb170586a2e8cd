#pragma once

#include "measuring.h"
#include "table_reporter.h"

namespace bench
{

/// Adds the rows of ledgers and balance lists to \a rows, and registers their benchmarks.
void registerLedgers(const Shops &shops, std::vector<Row> &rows);

} // namespace bench

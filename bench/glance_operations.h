#pragma once

#include "measuring.h"
#include "table_reporter.h"

namespace bench
{

/// Adds what stands beside a customer to \a rows, and registers its benchmarks.
void registerGlance(const Shops &shops, std::vector<Row> &rows);

} // namespace bench

#pragma once

#include "measuring.h"
#include "table_reporter.h"

namespace bench
{

/// Registers each row's two benchmarks with Google Benchmark and returns the rows of the table.
std::vector<Row> registerOperations(const Shops &shops);

} // namespace bench

#pragma once

#include "table_reporter.h"

namespace bench
{

class Shops;

/// Adds the rows of the register's export, and of working in a register of a million customers, to \a rows
/// and registers their benchmarks.
void registerExports(const Shops &shops, std::vector<Row> &rows);

} // namespace bench

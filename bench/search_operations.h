#pragma once

#include "table_reporter.h"

namespace bench
{

class Shops;

/// Adds the rows of the customer search to \a rows and registers their benchmarks.
void registerSearches(const Shops &shops, std::vector<Row> &rows);

} // namespace bench

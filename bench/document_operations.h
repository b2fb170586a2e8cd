#pragma once

#include "table_reporter.h"

namespace bench
{

class Shops;

/// Adds the rows of the search among issued documents to \a rows and registers their benchmarks. There are a
/// million of them, or as many as KANBALORE_BENCH_DOCUMENTS in the environment says.
void registerDocuments(const Shops &shops, std::vector<Row> &rows);

} // namespace bench

#pragma once

#include "measuring.h"
#include "table_reporter.h"

namespace bench
{

/// As registerOperations(), for work on files as a whole; their rows are appended to \a rows.
void registerFileOperations(const Shops &shops, std::vector<Row> &rows);

} // namespace bench

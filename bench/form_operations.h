#pragma once

#include "table_reporter.h"

namespace bench
{

/// Adds to \a rows how long a thousand delivery notes take to become one PDF.
void registerFormOperations(std::vector<Row> &rows);

} // namespace bench

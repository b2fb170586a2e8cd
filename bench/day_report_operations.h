#pragma once

#include "table_reporter.h"

namespace bench
{

/// A daily report to one PDF.
void registerDayReports(std::vector<Row> &rows);

} // namespace bench

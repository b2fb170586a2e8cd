#pragma once

#include "measuring.h"
#include "table_reporter.h"

namespace bench
{

void registerMigration(const Shops &shops, std::vector<Row> &rows);

} // namespace bench

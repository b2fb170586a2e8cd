#pragma once

#include "measuring.h"
#include "table_reporter.h"

namespace bench
{

/// Adds the bills of one customer and of all of a closing day.
void registerBills(const Shops &shops, std::vector<Row> &rows);

} // namespace bench

#pragma once

#include "measuring.h"

namespace bench
{

void registerMigration(const Shops &shops, std::vector<Row> &rows);

} // namespace bench

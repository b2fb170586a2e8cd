#pragma once

#include "base/result.h"

#include <cstdint>

namespace bench
{

struct ShopSize
{
    int customers = 1000;
    int slips = 10000;
    std::uint64_t seed = 1;
};

/// Makes a database file as twelve years of a shop would leave it, ending on 2026-03-31: masters, customers
/// with search keys, suppliers and slips of all kinds, three lines each on average. The same size and seed
/// give the same rows. Fails when \a fileName exists.
base::Status makeShop(const QString &fileName, const ShopSize &size);

} // namespace bench

#pragma once

#include <QString>

// Wards that were divided anew after the delivered dictionary was made (浜松市, 2024-01-01). Codes stayed,
// addresses changed, and people go on writing the old ones.
namespace registers
{

/// \a address, a whole one or without its prefecture, with the ward of today. A town that decides which it is
/// stands right behind the old ward; without it the ward that took most of it is named.
QString withWardOfToday(const QString &address);

/// Whether \a city is an old ward whose towns went to several: what it had for its rest stands for no ward.
bool isDividedWard(const QString &city);

} // namespace registers

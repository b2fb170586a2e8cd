#pragma once

#include "base/result.h"

#include <QString>

#include <vector>

namespace registers
{

/// A run of records of the postal-code file that belong to one place.
struct PostalGroup
{
    QString name;
    QString shortName;
    int firstRecord; // counted from 1
};

/// The groups in the file's order, held for the whole run.
using PostalIndex = std::vector<PostalGroup>;

/// As many groups as an index file may hold.
inline constexpr std::size_t highestPostalGroups = 50001;

/// Reads "ZIPID1.txt": records of three comma-separated fields in the system's code page, a field
/// optionally in double quotes. A missing file is an empty index; one that cannot be read, or holds too
/// many records, is an error.
base::Result<PostalIndex> loadPostalIndex(const QString &fileName);

} // namespace registers

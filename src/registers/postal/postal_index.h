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
class PostalIndex
{
public:
    explicit PostalIndex(std::vector<PostalGroup> groups = {})
        : m_groups(std::move(groups))
    {}

    [[nodiscard]] const std::vector<PostalGroup> &groups() const { return m_groups; }
    /// The same with their names in the form that all spellings of a place share; made when they are first
    /// asked for.
    [[nodiscard]] const std::vector<PostalGroup> &folded() const;

private:
    std::vector<PostalGroup> m_groups;
    mutable std::vector<PostalGroup> m_folded;
};

/// As many groups as an index file may hold.
inline constexpr std::size_t highestPostalGroups = 50001;

/// Reads "ZIPID1.txt": records of three comma-separated fields in the system's code page, a field
/// optionally in double quotes. A missing file is an empty index; one that cannot be read, or holds too
/// many records, is an error.
base::Result<PostalIndex> loadPostalIndex(const QString &fileName);

} // namespace registers

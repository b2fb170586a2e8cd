#include "db/care/leaf_rows.h"

#include <algorithm>
#include <limits>

namespace db
{

namespace
{

constexpr auto none = std::numeric_limits<std::size_t>::max();

// Which of \a records are in the longest run of ascending keys of those that fit; of several the one that
// ends lowest.
std::vector<bool> longestRun(const std::vector<StoredRecord> &records,
                             const std::function<bool(const StoredRecord &)> &fits)
{
    std::vector<std::size_t> ends; // of the runs of 1, 2, 3… records: the one with the lowest last key
    std::vector<std::size_t> before(records.size(), none);
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (!fits(records[i]))
            continue;
        const auto longer = std::ranges::lower_bound(ends, records[i].rowid, {},
                                                     [&](std::size_t end) { return records[end].rowid; });
        before[i] = longer == ends.begin() ? none : *std::prev(longer);
        if (longer == ends.end())
            ends.push_back(i);
        else
            *longer = i;
    }
    std::vector<bool> isIn(records.size());
    for (std::size_t i = ends.empty() ? none : ends.back(); i != none; i = before[i])
        isIn[i] = true;
    return isIn;
}

} // namespace

LeafRows readLeaf(PageReader &reader, const TreePage &page,
                  const std::function<bool(const StoredRecord &)> &fits)
{
    LeafRows rows;
    rows.broken = page.repeated;
    std::vector<StoredRecord> records;
    for (const quint32 cell : page.cells) {
        if (auto record = reader.record(page, cell))
            records.push_back(std::move(*record));
        else
            ++rows.broken;
    }
    const std::vector<bool> isIn = longestRun(records, fits);
    for (std::size_t i = 0; i < records.size(); ++i)
        (isIn[i] ? rows.inPlace : rows.others).push_back(std::move(records[i]));
    return rows;
}

} // namespace db

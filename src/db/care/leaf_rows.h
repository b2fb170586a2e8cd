#pragma once

#include "db/care/page_reader.h"

#include <functional>

namespace db
{

/// The rows of a leaf, as far as they can be read.
struct LeafRows
{
    std::vector<StoredRecord> inPlace; // their keys ascend, as those of a leaf do
    std::vector<StoredRecord> others;
    qint64 broken = 0; // cells that cannot be read

    [[nodiscard]] bool areMostlyInPlace() const { return inPlace.size() > others.size(); }
};

/// The rows of the leaf \a page. In place are the most that fit and whose keys ascend: a single wrong key, be
/// it too high or too low, puts its own row alone among the others.
LeafRows readLeaf(PageReader &reader, const TreePage &page,
                  const std::function<bool(const StoredRecord &)> &fits);

} // namespace db

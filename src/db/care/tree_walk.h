#pragma once

#include "base/progress.h"
#include "db/care/page_reader.h"

#include <limits>

// The trees of a damaged database file, walked from their roots.
namespace db
{

/// Keys of rows, both ends included.
struct KeyRange
{
    qint64 low = std::numeric_limits<qint64>::min();
    qint64 high = std::numeric_limits<qint64>::max();

    [[nodiscard]] bool contains(qint64 key) const { return key >= low && key <= high; }
    /// Whether every key is allowed.
    [[nodiscard]] bool isWhole() const { return contains(KeyRange().low) && contains(KeyRange().high); }
};

class TreeWalk
{
public:
    TreeWalk(const PageReader &reader, const base::Progress &progress);

    /// Is given a leaf and the keys that its place in the tree allows. \return whether it belongs there
    using LeafVisitor = std::function<base::Result<bool>(const TreePage &leaf, const KeyRange &range)>;

    /// Visits the leaves of the table's tree \a root in their order. Where a page is unreadable or does not
    /// belong where it stands, \a gaps gets the keys that may be missing for it; no tree has reached it then.
    base::Status table(quint32 root, const LeafVisitor &visit, std::vector<KeyRange> &gaps);

    /// Visits the sound pages of the index's tree \a root in their order. \return whether all could be read
    base::Result<bool> index(quint32 root, const std::function<void(const TreePage &)> &visit);

    /// Whether some tree has reached the page.
    [[nodiscard]] bool isReached(quint32 page) const { return m_reached[page]; }

    /// One more page was looked at; cancelled() when that was to be the last one.
    base::Status looked();

private:
    struct TableWalk
    {
        const LeafVisitor &visit;
        std::vector<KeyRange> &gaps;
    };

    base::Status tablePage(quint32 number, const KeyRange &range, const KeyRange &around, TableWalk &walk,
                           int depth);
    base::Status tableChildren(const TreePage &page, const KeyRange &range, TableWalk &walk, int depth);
    base::Result<bool> indexPage(quint32 number, const std::function<void(const TreePage &)> &visit,
                                 int depth);
    [[nodiscard]] std::optional<TreePage> unreached(quint32 number, int depth) const;

    const PageReader &m_reader;
    const base::Progress &m_progress;
    std::vector<bool> m_reached;
    qint64 m_looks = 0;
};

} // namespace db

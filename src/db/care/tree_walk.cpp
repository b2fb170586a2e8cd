#include "db/care/tree_walk.h"

#include <algorithm>

namespace db
{

namespace
{

constexpr int deepestTree = 40; // levels; SQLite's own limit is 20

// The keys of an inner page part the range that its own place allows.
bool isParted(const std::vector<qint64> &keys, const KeyRange &range)
{
    return std::ranges::adjacent_find(keys, std::ranges::greater_equal()) == keys.end() &&
           std::all_of(keys.begin(), keys.end(), [&](qint64 key) { return range.contains(key); });
}

} // namespace

TreeWalk::TreeWalk(const PageReader &reader, const base::Progress &progress)
    : m_reader(reader)
    , m_progress(progress)
    , m_reached(reader.pageCount() + 1u)
{}

base::Status TreeWalk::looked()
{
    const qint64 pages = m_reader.pageCount();
    return m_progress(qMin(++m_looks, pages), pages) ? base::Status() : base::cancelled();
}

// No page is visited twice.
std::optional<TreePage> TreeWalk::unreached(quint32 number, int depth) const
{
    return number < m_reached.size() && !m_reached[number] && depth <= deepestTree ? m_reader.page(number)
                                                                                   : std::nullopt;
}

base::Status TreeWalk::table(quint32 root, const LeafVisitor &visit, std::vector<KeyRange> &gaps)
{
    TableWalk walk{visit, gaps};
    return tablePage(root, {}, {}, walk, 0);
}

// \a around: the range of the page above, whose keys may themselves be damaged.
base::Status TreeWalk::tablePage(quint32 number, const KeyRange &range, const KeyRange &around,
                                 TableWalk &walk, int depth)
{
    const auto page = unreached(number, depth);
    const bool isInner = page && page->kind == TreePage::TableInterior && isParted(page->keys, range);
    const bool isLeaf = page && page->kind == TreePage::TableLeaf;
    if (!isInner && !isLeaf) {
        walk.gaps.push_back(around);
        return {};
    }
    if (const base::Status going = looked(); !going)
        return going;
    if (isInner)
        return tableChildren(*page, range, walk, depth);
    const auto isOwn = walk.visit(*page, range);
    if (!isOwn)
        return isOwn.error();
    m_reached[number] = *isOwn;
    if (!*isOwn)
        walk.gaps.push_back(around);
    return {};
}

base::Status TreeWalk::tableChildren(const TreePage &page, const KeyRange &range, TableWalk &walk, int depth)
{
    m_reached[page.number] = true;
    KeyRange part = range;
    for (std::size_t i = 0; i < page.children.size(); ++i) {
        part.high = i < page.keys.size() ? page.keys[i] : range.high;
        if (const base::Status walked = tablePage(page.children[i], part, range, walk, depth + 1); !walked)
            return walked;
        // The last one before the right end may have the highest key of all.
        part.low = part.high == std::numeric_limits<qint64>::max() ? part.high : part.high + 1;
    }
    return {};
}

base::Result<bool> TreeWalk::index(quint32 root, const std::function<void(const TreePage &)> &visit)
{
    return indexPage(root, visit, 0);
}

base::Result<bool> TreeWalk::indexPage(quint32 number, const std::function<void(const TreePage &)> &visit,
                                       int depth)
{
    const auto page = unreached(number, depth);
    if (!page || (page->kind != TreePage::IndexLeaf && page->kind != TreePage::IndexInterior))
        return false;
    m_reached[number] = true;
    if (const base::Status going = looked(); !going)
        return going.error();
    visit(*page);
    bool isWhole = true;
    for (const quint32 child : page->children) {
        const auto below = indexPage(child, visit, depth + 1);
        if (!below)
            return below;
        isWhole = isWhole && *below;
    }
    return isWhole;
}

} // namespace db

#include "db/care/salvage.h"

#include "base/flush.h"
#include "db/care/leaf_rows.h"
#include "db/care/page_reader.h"
#include "db/care/plain_handle.h"
#include "db/care/row_writer.h"
#include "db/care/source_table.h"
#include "db/care/tree_walk.h"
#include "db/create.h"
#include "db/errors.h"
#include "db/schema.h"

#include <QFile>

#include <algorithm>
#include <sqlite3.h>
#include <unordered_map>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

// Far beyond what a shop reaches, far below where numbers end: a greater one is damage.
constexpr qint64 highestCounter = qint64(1) << 50;

// The keys of the rows that an index names.
struct IndexedKeys
{
    std::unordered_set<qint64> keys;
    bool isWhole = true; // as far as it can be read
    bool isOwn = true;   // nothing in it is another index's
};

class Salvager
{
public:
    Salvager(sqlite3 *source, PlainHandle &target, const base::Progress &progress)
        : m_reader(source)
        , m_target(target)
        , m_trees(m_reader, progress)
    {}

    base::Result<Salvage> run();

private:
    base::Status carryTree(SourceTable &table);
    base::Result<bool> carryOwn(SourceTable &table, const TreePage &page, const KeyRange &range);
    base::Status carryRows(SourceTable &table, const LeafRows &rows);
    [[nodiscard]] bool isOwn(const SourceTable &table, const LeafRows &rows) const;
    [[nodiscard]] bool isAnothers(const SourceTable &table, const std::vector<StoredRecord> &records) const;
    base::Status carry(SourceTable &table, const StoredRecord &record);
    void doubt(const StoredRecord &record, const QString &table);
    base::Status carryLooseLeaves();
    base::Status carryLooseLeaf(const TreePage &page);
    [[nodiscard]] bool isCopy(const TreePage &page) const;
    base::Status settleUncarried(SourceTable &table);
    base::Status listOrphans();
    SourceTable *onlyOne(const LeafRows &rows, bool (SourceTable::*fits)(qint64, qint64) const);
    SourceTable *ownerOf(const LeafRows &rows);
    base::Status countUnread(SourceTable &table);
    base::Result<IndexedKeys> readIndex(quint32 root);
    base::Status settleCounter();

    PageReader m_reader;
    PlainHandle &m_target;
    TreeWalk m_trees;
    std::vector<SourceTable> m_tables;
    std::vector<std::unique_ptr<RowWriter>> m_writers;
    std::unordered_map<std::size_t, quint32> m_leaves; // whose rows were carried, by their bytes' hashes
    Salvage m_outcome;
};

base::Status Salvager::carry(SourceTable &table, const StoredRecord &record)
{
    const auto index = static_cast<std::size_t>(&table - m_tables.data());
    // The rows that a new file begins with make room for those of the old one.
    if (table.outcome.carried == 0) {
        if (const base::Status cleared = m_target.run("DELETE FROM " + table.table->name.toUtf8()); !cleared)
            return cleared;
    }
    const auto written = m_writers[index]->write(record);
    if (!written)
        return written.error();
    if (written->isNew) {
        table.outcome.cut += written->cut;
        ++table.outcome.carried;
        table.carried.push_back(record.rowid);
    } else {
        doubt(record, table.table->name);
    }
    return {};
}

void Salvager::doubt(const StoredRecord &record, const QString &table)
{
    ++m_outcome.strayRows;
    if (m_outcome.doubtful.size() >= doubtfulRowsKept)
        return;
    DoubtfulRow row{table, record.rowid, {}};
    for (std::size_t i = 0; i < record.values.size(); ++i)
        row.values << shownValue(record, i, m_reader.encoding());
    m_outcome.doubtful.push_back(std::move(row));
}

// Whether most rows of a leaf are in place, and either look like those of the table it was found in, or at
// least not like another one's: what a companion program stored may be of another kind than ours.
bool Salvager::isOwn(const SourceTable &table, const LeafRows &rows) const
{
    if (!rows.areMostlyInPlace())
        return false;
    const auto alike = std::count_if(rows.inPlace.begin(), rows.inPlace.end(),
                                     [&](const StoredRecord &record) { return table.canHold(record); });
    return std::size_t(alike) * 2 > rows.inPlace.size() || !isAnothers(table, rows.inPlace);
}

bool Salvager::isAnothers(const SourceTable &table, const std::vector<StoredRecord> &records) const
{
    return std::any_of(m_tables.begin(), m_tables.end(), [&](const SourceTable &other) {
        return &other != &table &&
               std::all_of(records.begin(), records.end(),
                           [&](const StoredRecord &record) { return other.canHold(record); });
    });
}

// \return whether the leaf is one of the table's
base::Result<bool> Salvager::carryOwn(SourceTable &table, const TreePage &page, const KeyRange &range)
{
    const LeafRows rows = readLeaf(m_reader, page, [&](const StoredRecord &record) {
        return range.contains(record.rowid) && table.hasWidthOf(record);
    });
    // Only a tree that is one empty leaf has an empty one.
    const bool isEmpty = page.cells.empty() && range.isWhole();
    if (!isEmpty && !isOwn(table, rows))
        return false;
    const base::Status carried = carryRows(table, rows);
    m_leaves.emplace(qHash(page.bytes), page.number);
    return carried ? base::Result<bool>(true) : carried.error();
}

// The rows of a leaf of the table.
base::Status Salvager::carryRows(SourceTable &table, const LeafRows &rows)
{
    for (const StoredRecord &record : rows.inPlace) {
        if (const base::Status carried = carry(table, record); !carried)
            return carried;
    }
    for (const StoredRecord &record : rows.others) {
        table.misplaced += table.canHold(record) ? 1 : 0;
        doubt(record, table.table->name);
    }
    if (!rows.inPlace.empty())
        table.addLeaf(rows.inPlace.front().rowid, rows.inPlace.back().rowid);
    table.outcome.unread += rows.broken;
    return {};
}

base::Status Salvager::carryTree(SourceTable &table)
{
    if (table.root == 0)
        return {};
    return m_trees.table(
        table.root, [&](const TreePage &page, const KeyRange &range) { return carryOwn(table, page, range); },
        table.gaps);
}

// A shop may have emptied a table in which every new file has rows; otherwise they stand for those that were
// lost.
base::Status Salvager::settleUncarried(SourceTable &table)
{
    if (!table.carried.empty() || table.isAbsent)
        return {};
    const bool isEmptied = table.root != 0 && !table.isDamaged() && table.outcome.unread == 0;
    if (isEmptied)
        return m_target.run("DELETE FROM " + table.table->name.toUtf8());
    const auto rows = m_target.number("SELECT count(*) FROM " + table.table->name.toUtf8());
    if (!rows)
        return rows.error();
    table.outcome.isAsNew = *rows > 0;
    return {};
}

base::Status Salvager::listOrphans()
{
    const QByteArray lines = "FROM 入出庫サブ WHERE ID IS NULL OR ID NOT IN (SELECT ID FROM 入出庫マスター)";
    const auto count = m_target.number("SELECT count(*) " + lines);
    if (!count)
        return count.error();
    m_outcome.orphanLines = *count;
    PlainStatement found(m_target, "SELECT ID, 商品名, 金額 " + lines + " ORDER BY ID, 明細ID");
    while (found && m_outcome.orphans.size() < orphansKept && found.step() == SQLITE_ROW)
        m_outcome.orphans.push_back(
            {sqlite3_column_int64(found.get(), 0), found.text(1), sqlite3_column_double(found.get(), 2)});
    return found ? base::Status() : m_target.error();
}

SourceTable *Salvager::onlyOne(const LeafRows &rows, bool (SourceTable::*fits)(qint64, qint64) const)
{
    SourceTable *only = nullptr;
    for (SourceTable &table : m_tables) {
        const bool isOne = (table.*fits)(rows.inPlace.front().rowid, rows.inPlace.back().rowid) &&
                           std::all_of(rows.inPlace.begin(), rows.inPlace.end(),
                                       [&](const StoredRecord &record) { return table.canHold(record); });
        if (isOne && std::exchange(only, &table))
            return nullptr;
    }
    return only;
}

// The one table that can hold the rows of a loose leaf and lacks them; null when there is none, or
// several. A tree whose root is a part of it looks whole: then the leaf itself shows that it is not.
SourceTable *Salvager::ownerOf(const LeafRows &rows)
{
    if (!rows.areMostlyInPlace())
        return nullptr;
    if (SourceTable *owner = onlyOne(rows, &SourceTable::lacks))
        return owner;
    SourceTable *owner = onlyOne(rows, &SourceTable::goesOnBeside);
    if (owner && !owner->isDamaged())
        owner->gaps.push_back({});
    return owner;
}

// Leaves that no tree leads to any more. Emptied pages still hold what was deleted: without the list of them
// nothing is taken, unless the whole header is lost and there is nothing else to go by.
base::Status Salvager::carryLooseLeaves()
{
    const auto free = m_reader.freePages();
    if (!free && m_reader.hasHeader())
        return {};
    for (quint32 number = 2; number <= m_reader.pageCount(); ++number) {
        if (m_trees.isReached(number) || (free && (*free)[number]))
            continue;
        if (const base::Status going = m_trees.looked(); !going)
            return going;
        const auto page = m_reader.page(number);
        if (!page || page->kind != TreePage::TableLeaf)
            continue;
        if (const base::Status carried = carryLooseLeaf(*page); !carried)
            return carried;
    }
    return {};
}

// A leaf that was written to a second place is no other table's, however well its rows would fit there.
bool Salvager::isCopy(const TreePage &page) const
{
    const auto same = m_leaves.find(qHash(page.bytes));
    if (same == m_leaves.end())
        return false;
    const auto carried = m_reader.page(same->second);
    return carried && carried->bytes == page.bytes;
}

base::Status Salvager::carryLooseLeaf(const TreePage &page)
{
    const LeafRows rows = readLeaf(m_reader, page, [](const StoredRecord &) { return true; });
    if (SourceTable *owner = isCopy(page) ? nullptr : ownerOf(rows)) {
        m_leaves.emplace(qHash(page.bytes), page.number);
        return carryRows(*owner, rows);
    }
    for (const auto *part : {&rows.inPlace, &rows.others}) {
        for (const StoredRecord &record : *part)
            doubt(record, {});
    }
    return {};
}

base::Result<IndexedKeys> Salvager::readIndex(quint32 root)
{
    IndexedKeys found;
    std::size_t width = 0;
    const auto isWhole = m_trees.index(root, [&](const TreePage &page) {
        found.isWhole = found.isWhole && page.repeated == 0;
        for (const quint32 cell : page.cells) {
            const auto entry = m_reader.record(page, cell);
            if (!entry || entry->values.empty() || !entry->isInteger(entry->values.size() - 1)) {
                found.isWhole = false;
                continue;
            }
            width = width == 0 ? entry->values.size() : width;
            // An entry of another width, or for a row that has one, is another index's.
            found.isOwn = found.isOwn && entry->values.size() == width &&
                          found.keys.insert(entry->integer(width - 1)).second;
        }
    });
    if (!isWhole)
        return isWhole.error();
    found.isWhole = found.isWhole && *isWhole;
    return found;
}

// An index that is sound names every row of its table, those that were carried as well as those that were
// lost.
base::Status Salvager::countUnread(SourceTable &table)
{
    const std::unordered_set<qint64> carried(table.carried.begin(), table.carried.end());
    table.outcome.isOpenEnd = true;
    for (const quint32 root : table.indexRoots) {
        const auto found = readIndex(root);
        if (!found)
            return found.error();
        if (!found->isOwn)
            continue;
        const auto missing = std::count_if(found->keys.begin(), found->keys.end(),
                                           [&](qint64 key) { return !carried.contains(key); });
        // Those under wrong numbers were read, and are among the doubtful ones.
        table.outcome.unread = qMax<qint64>(table.outcome.unread, missing - table.misplaced);
        const bool namesAll = found->keys.size() == carried.size() + std::size_t(missing);
        table.outcome.isOpenEnd = table.outcome.isOpenEnd && !(found->isWhole && namesAll);
    }
    return {};
}

base::Result<Salvage> Salvager::run()
{
    auto tables = readSourceTables(m_reader, m_trees);
    if (!tables)
        return tables.error();
    m_tables = std::move(*tables);
    for (const SourceTable &table : m_tables)
        m_writers.push_back(
            std::make_unique<RowWriter>(m_target, *table.table, table.columns, m_reader.encoding()));
    for (SourceTable &table : m_tables) {
        if (const base::Status carried = carryTree(table); !carried)
            return carried.error();
    }
    if (const base::Status carried = carryLooseLeaves(); !carried)
        return carried.error();
    for (SourceTable &table : m_tables) {
        if (table.isDamaged()) {
            if (const base::Status counted = countUnread(table); !counted)
                return counted.error();
        }
        if (const base::Status cleared = settleUncarried(table); !cleared)
            return cleared.error();
        if (table.table->name != counterTable)
            m_outcome.tables.push_back(table.outcome);
    }
    if (const base::Status listed = listOrphans(); !listed)
        return listed.error();
    if (const base::Status settled = settleCounter(); !settled)
        return settled.error();
    return std::move(m_outcome);
}

// One number, not below any that a row bears: of a damaged file the counter may be lost, or be any value.
base::Status Salvager::settleCounter()
{
    QStringList highest;
    for (const SourceTable &table : m_tables) {
        const bool isCounter = table.table->name == counterTable;
        if (isCounter || table.table->columns.contains(versionColumn))
            highest << u"SELECT max(%1) AS n FROM %2 WHERE typeof(%1) = 'integer' AND %1 BETWEEN 0 AND %3"_s
                           .arg(isCounter ? u"最終"_s : QString::fromUtf16(versionColumn), table.table->name,
                                QString::number(highestCounter));
    }
    const QString counter = QString::fromUtf16(counterTable);
    const auto last = m_target.number(
        u"SELECT coalesce(max(n), 0) FROM (%1)"_s.arg(highest.join(u" UNION ALL "_s)).toUtf8());
    if (!last)
        return last.error();
    return m_target.run(
        u"DELETE FROM %1; INSERT INTO %1 (版数ID, 最終) VALUES (1, %2)"_s.arg(counter).arg(*last).toUtf8());
}

base::Result<Salvage> carryOver(sqlite3 *source, const QString &target, const base::Progress &progress)
{
    PlainHandle written;
    // The file is nobody's until it is complete, and is flushed as a whole then.
    if (const base::Status opened = written.open(target); !opened)
        return opened.error();
    if (const base::Status begun =
            written.run("PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF; BEGIN");
        !begun)
        return begun.error();
    auto done = Salvager(source, written, progress).run();
    if (!done)
        return done;
    if (const base::Status committed = written.run("COMMIT"); !committed)
        return committed.error();
    return done;
}

} // namespace

bool Salvage::isComplete() const
{
    return strayRows == 0 && std::ranges::all_of(tables, &SalvagedTable::isComplete);
}

qint64 Salvage::carried() const
{
    qint64 sum = 0;
    for (const SalvagedTable &table : tables)
        sum += table.carried;
    return sum;
}

QString unreadText(const SalvagedTable &table)
{
    if (!table.isOpenEnd)
        return QString::number(table.unread);
    return table.unread == 0 ? u"不明"_s : u"%1 以上"_s.arg(table.unread);
}

base::Result<Salvage> salvage(const PlainHandle &source, const QString &target,
                              const base::Progress &progress)
{
    if (const base::Status created = createDatabase(target); !created)
        return created.error();
    auto done = carryOver(source.get(), target, progress);
    if (done) {
        if (const base::Status flushed = base::flushFile(target); !flushed)
            done = flushed.error();
    }
    if (!done)
        QFile::remove(target);
    return done;
}

base::Result<Salvage> rebuild(const QString &source, const QString &target, const base::Progress &progress)
{
    PlainHandle handle;
    // Opening plays back what a program that broke off left behind. The reading transaction keeps other
    // programs from writing into the pages meanwhile; a file too damaged for one is nobody's to write in.
    if (const base::Status opened = handle.open(source); !opened)
        return opened.error();
    (void)handle.run("PRAGMA journal_mode = DELETE; BEGIN; SELECT count(*) FROM sqlite_schema");
    return salvage(handle, target, progress);
}

} // namespace db

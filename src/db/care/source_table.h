#pragma once

#include "db/care/salvage.h"
#include "db/care/tree_walk.h"
#include "db/schema.h"

#include <map>

namespace db
{

/// One of our tables in a damaged file.
struct SourceTable
{
    const Table *table = nullptr;
    QStringList columns; // as the file has them
    quint32 root = 0;    // 0: lost
    std::vector<quint32> indexRoots;
    bool isAbsent = false;           // the file is of a version that had no such table
    std::vector<KeyRange> gaps;      // where pages are missing from its tree
    std::map<qint64, qint64> leaves; // first and last key of those that were carried
    std::vector<qint64> carried;
    qint64 misplaced = 0; // rows that look like its own, in its place, under another's number
    SalvagedTable outcome;

    [[nodiscard]] bool isDamaged() const { return !gaps.empty(); }

    /// Whether \a record has as many values as a row of this table that was written now, or before some of
    /// its columns were added: SQLite leaves the rows that are there as they are.
    [[nodiscard]] bool hasWidthOf(const StoredRecord &record) const;

    /// Whether \a record looks like one of its rows: a key is stored as NULL, the row's number stands for it;
    /// numbers, texts and days stand in columns of their kind.
    [[nodiscard]] bool canHold(const StoredRecord &record) const;

    /// Whether a leaf with keys from \a first to \a last is missing from it as far as its tree tells.
    [[nodiscard]] bool lacks(qint64 first, qint64 last) const;

    /// Whether it has leaves, and none of them rows from \a first to \a last.
    [[nodiscard]] bool goesOnBeside(qint64 first, qint64 last) const
    {
        return !leaves.empty() && hasRoomFor(first, last);
    }

    /// Notes a leaf that was carried.
    void addLeaf(qint64 first, qint64 last) { leaves.insert_or_assign(first, last); }

private:
    [[nodiscard]] bool hasRoomFor(qint64 first, qint64 last) const;
};

/// The tables that the file's own list of them names, and those that it ought to name. The trees of tables
/// that are not ours have been walked then.
base::Result<std::vector<SourceTable>> readSourceTables(PageReader &reader, TreeWalk &trees);

/// The text of a value in the file's encoding; empty for what is no text.
QString textIn(const StoredRecord &record, std::size_t index, int encoding);

/// What is kept of a doubtful row's value, to be looked at.
QString shownValue(const StoredRecord &record, std::size_t index, int encoding);

} // namespace db

#pragma once

#include "base/progress.h"
#include "base/result.h"

#include <QStringList>

#include <vector>

namespace db
{

class PlainHandle;

/// So many doubtful rows are kept with their values.
inline constexpr std::size_t doubtfulRowsKept = 20000;

/// What became of the rows of one table.
struct SalvagedTable
{
    QString table;
    qint64 carried = 0;
    qint64 unread = 0;      // rows known to be there that could not be read
    bool isOpenEnd = false; // pages are lost, and nothing tells how many rows were on them
    qint64 cut = 0;         // texts of which only the beginning was there
    bool isAsNew = false;   // nothing of it could be read, and the rows of a new file stand in it
    QStringList emptied{};  // columns that could not be told among those of the file

    /// Whether all that was there is there.
    [[nodiscard]] bool isComplete() const
    {
        return unread == 0 && !isOpenEnd && cut == 0 && !isAsNew && emptied.isEmpty();
    }
};

/// So many lines without their slip are kept with their contents.
inline constexpr std::size_t orphansKept = 1000;

/// A line whose slip is not in the file.
struct OrphanLine
{
    qint64 slip = 0; // ID
    QString goods;
    double amount = 0; // yen
};

/// A row that can be read, but that nothing puts into a table for certain.
struct DoubtfulRow
{
    QString table; // in whose place it stood; empty: in none
    qint64 key = 0;
    QStringList values; // as texts, in their order
};

struct Salvage
{
    std::vector<SalvagedTable> tables; // in the order of schema.sql
    qint64 strayRows = 0;              // those in doubt; they are in no table
    std::vector<DoubtfulRow> doubtful; // the first of them, at most doubtfulRowsKept
    qint64 orphanLines = 0;            // carried, but their slips were lost, now or earlier
    std::vector<OrphanLine> orphans;   // the first of them, at most orphansKept

    [[nodiscard]] bool isComplete() const;
    [[nodiscard]] qint64 carried() const;
};

/// "12", "12 以上", or "不明" when nothing tells how many.
QString unreadText(const SalvagedTable &table);

/// Carries the rows of the database file open in \a source into a new file \a target, which must not exist:
/// page by page, so that damage costs only what stood on the damaged pages. Each table's tree is walked from
/// its root; a leaf counts as its own when the keys are those that its place allows and the rows have the
/// table's shape. The others, and those that no tree leads to, are given to the one damaged table whose rows
/// they look like and that lacks just these keys. Keys stay, lines keep their order. A failed or stopped run
/// leaves no target.
base::Result<Salvage> salvage(const PlainHandle &source, const QString &target,
                              const base::Progress &progress);

/// The same for the file \a source, which another program may be working in meanwhile.
base::Result<Salvage> rebuild(const QString &source, const QString &target, const base::Progress &progress);

} // namespace db

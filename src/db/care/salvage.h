#pragma once

#include "base/progress.h"
#include "base/result.h"

#include <QString>

#include <vector>

namespace db
{

class PlainHandle;

/// What became of the rows of one table.
struct SalvagedTable
{
    QString table;
    qint64 carried = 0;
    qint64 unread = 0;      // rows known to be there that could not be read
    bool isOpenEnd = false; // pages are lost, and nothing tells how many rows were on them
};

struct Salvage
{
    std::vector<SalvagedTable> tables; // in the order of schema.sql
    qint64 strayRows = 0;              // readable, but nothing tells any more which table they belong to

    [[nodiscard]] bool isComplete() const;
    [[nodiscard]] qint64 carried() const;
};

/// "12", "12 以上", or "不明" when nothing tells how many.
QString unreadText(const SalvagedTable &table);

/// Carries the rows of the database file open in \a source into a new file \a target, which must not exist:
/// page by page, so that damage costs only what stood on the damaged pages. Each table's tree is walked from
/// its root; of a tree whose inner pages are damaged the loose leaves are found by what their rows look
/// like. Keys stay, lines keep their order. A failed or stopped run leaves no target.
base::Result<Salvage> salvage(const PlainHandle &source, const QString &target,
                              const base::Progress &progress);

/// The same for the file \a source, which another program may be working in meanwhile.
base::Result<Salvage> rebuild(const QString &source, const QString &target, const base::Progress &progress);

} // namespace db

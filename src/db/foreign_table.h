#pragma once

#include "base/progress.h"
#include "base/result.h"

#include <QStringList>

#include <vector>

namespace db
{

/// A table of a database file that is not the shop's own, every value as text.
struct ForeignTable
{
    QStringList columns;
    std::vector<QStringList> rows; // in the order of the file
};

/// The table \a name of \a fileName, which is a file of SQLite or of the old engine. Neither is written, nor
/// trusted: views and statements in it are not carried out, the old engine's file is read by a process of its
/// own. Fails where there is no such table, and beyond 200,000 rows. Must not be called for a file that this
/// process has open.
base::Result<ForeignTable> readForeignTable(const QString &fileName, const QString &name,
                                            const base::Progress &progress);

/// Whether \a fileName begins as a database file of either kind.
bool isForeignDatabase(const QString &fileName);

} // namespace db

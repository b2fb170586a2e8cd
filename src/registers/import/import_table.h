#pragma once

#include "base/progress.h"

#include <QStringList>

#include <vector>

// Tables of customers as other programs give them away, cell by cell and not yet judged.
namespace registers
{

struct ImportTable
{
    struct Row
    {
        int line; // of the file, from 1
        QStringList cells;
    };
    std::vector<Row> rows; // never empty; rows without any text are left out
    qsizetype columns = 0;

    [[nodiscard]] const QStringList &firstRow() const { return rows.front().cells; }
};

/// The table in a CSV file (UTF-8, UTF-16, ISO-2022-JP or the system's Japanese code page; at most 64 MB),
/// its cells separated by what a first line "sep=;" names, else by commas, or by tabs or semicolons where the
/// first row is. Read piece by piece; beyond 200,000
/// rows or 3,000,000 cells it is too much. Fails for what is no such table, and for quotes that are never
/// closed, which would swallow the rows that follow.
base::Result<ImportTable> readImportFile(const QString &fileName, const base::Progress &progress);

/// The table that another program put on the clipboard as \a text: cells with tabs between.
base::Result<ImportTable> tableFromClipboard(const QString &text);

} // namespace registers

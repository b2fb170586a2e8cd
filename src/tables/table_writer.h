#pragma once

#include "base/progress.h"
#include "tables/cell.h"

#include <functional>
#include <vector>

namespace tables
{

/// A table that is written row by row, so that its size costs no memory.
struct Table
{
    std::vector<base::Column> columns;
    qint64 rowCount = 0;
    /// Puts the next row's values in place of \a row. \return false after the last one
    std::function<base::Result<bool>(QVariantList &row)> next;
};

/// Whether a table of \a rowCount rows can be written as \a fileName, whose extension tells the format: .xls,
/// .xlsx or .csv. To be asked before the clerk is asked about overwriting.
base::Status checkTarget(const QString &fileName, qint64 rowCount);

/// Writes \a table as \a fileName, with a row of headings; spreadsheets get it as "Sheet1". A file of that
/// name is replaced when the new one is complete; after a failure or a stop it is as it was.
/// Fails for a text that a cell of the format cannot hold.
base::Status writeTable(const QString &fileName, const Table &table, const base::Progress &progress);

} // namespace tables

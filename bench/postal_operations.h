#pragma once

#include "table_reporter.h"

#include <QDir>

namespace bench
{

/// Adds the rows of the postal codes, on the national data in \a folder or beside the program; none when the
/// data files are in neither.
void registerPostalOperations(const QDir &folder, std::vector<Row> &rows);

} // namespace bench

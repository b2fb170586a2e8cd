#pragma once

#include "table_reporter.h"

#include <QDir>

namespace bench
{

/// Registers the conversion of an old file of 50,000 rows, made in \a folder, against what another reader
/// needs to print its tables; adds its line to \a rows.
void registerConversion(const QDir &folder, std::vector<Row> &rows);

} // namespace bench

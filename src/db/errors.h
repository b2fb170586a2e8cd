#pragma once

#include "base/result.h"

#include <QSqlError>

struct sqlite3;

namespace db
{

/// The clerk's sentence for a failure of the database: full disk, read-only, locked, damaged or other.
base::Error errorFrom(const QSqlError &error);

/// The same for a failure that \a handle reports after a call of the C interface.
base::Error errorFrom(sqlite3 *handle);

/// The same for a bare SQLite result code; \a detail is appended where the code says little.
base::Error errorFromCode(int code, const QString &detail);

} // namespace db

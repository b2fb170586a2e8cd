#pragma once

#include "base/result.h"

#include <QString>

namespace db
{

/// Whether \a fileName begins as a database file of this program and of a version that it knows. Reads the
/// first 100 bytes only; must not be called for a file that this process has open.
base::Status checkHeader(const QString &fileName);

/// What \a fileName is by its first bytes, where it is something else than a database file: "PDF の文書".
/// Empty when they do not tell, as those of a damaged one. As checkHeader().
QString foreignKindOf(const QString &fileName);

/// The schema version in the header of \a fileName; 0 when it is no database file of this program. As
/// checkHeader().
int storedVersion(const QString &fileName);

} // namespace db

#pragma once

#include "base/result.h"

namespace db
{

/// Makes an empty database file of this program with all its tables. Fails when \a fileName exists and
/// is not empty.
base::Status createDatabase(const QString &fileName);

} // namespace db

#pragma once

#include "base/result.h"

namespace db
{

class Connection;

/// Keys are 32-bit integers, as the slip forms and the users' older files hold them.
inline constexpr qint64 highestKey = 2147483647;

/// The next free key of \a table: the highest existing one plus 1, 1 for an empty table. Fails when the
/// highest key is taken. To be called inside the transaction that uses it.
base::Result<qint64> nextKey(Connection &connection, const QString &table);

} // namespace db

#pragma once

#include "base/result.h"

#include <QVariantList>

namespace db
{

class Connection;

/// Keys are 32-bit integers, as the slip forms and the users' older files hold them.
inline constexpr qint64 highestKey = 2147483647;

/// The next free key of \a table: the highest existing one plus 1, 1 for an empty table. Fails when the
/// highest key is taken. To be called inside the transaction that uses it.
base::Result<qint64> nextKey(Connection &connection, const QString &table);

/// Raises the file's counter and gives its number, which a row that is changed bears from then on as its 版.
/// To be called inside the transaction of the change. A row that is added bears the number as it is,
/// "(SELECT 最終 FROM 版数)": no row of its key had it, since a deletion raises it.
base::Result<qint64> nextVersion(Connection &connection);

/// Deletes rows by \a statement and raises the counter, so that a row that is given one of their keys again
/// is never taken for the one before. \return how many
base::Result<int> deleteRows(Connection &connection, const QString &statement,
                             const QVariantList &values = {});

} // namespace db

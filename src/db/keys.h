#pragma once

#include "base/result.h"
#include "db/condition.h"

namespace db
{

class Connection;

/// Keys are 32-bit integers, as the slip forms and the users' older files hold them.
inline constexpr qint64 highestKey = 2147483647;

/// The next free key of \a table: the highest existing one plus 1, 1 for an empty table. Where the highest
/// key of all is taken, the one above the rows below the highest gap; fails when there is none. To be called
/// inside the transaction that uses it.
base::Result<qint64> nextKey(Connection &connection, const QString &table);

/// Where rows name the keys of another table's.
struct References
{
    QString table;
    QString column;
    Condition condition = {}; // empty: every row of the table
};

/// The lowest key from \a next on that none of \a references names: \a next itself unless rows are left of
/// what was deleted or lost, which whatever gets their key would take over. A single one far above costs no
/// other number. Fails when all are named. To be called inside the transaction that uses the key.
base::Result<qint64> unusedKey(Connection &connection, qint64 next, const References &references);

/// Raises the file's counter and gives its number, which a row that is changed bears from then on as its 版.
/// To be called inside the transaction of the change. A row that is added bears the number as it is,
/// "(SELECT 最終 FROM 版数)": no row of its key had it, since a deletion raises it.
base::Result<qint64> nextVersion(Connection &connection);

/// Deletes rows by \a statement and raises the counter, so that a row that is given one of their keys again
/// is never taken for the one before. Refuses to touch issued documents (発行控). \return how many
base::Result<int> deleteRows(Connection &connection, const QString &statement,
                             const QVariantList &values = {});

} // namespace db

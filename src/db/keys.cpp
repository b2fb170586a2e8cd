#include "db/keys.h"

#include "db/connection.h"
#include "db/schema.h"

using namespace Qt::StringLiterals;

namespace db
{

base::Result<qint64> nextKey(Connection &connection, const QString &table)
{
    const QString key = keyOf(table);
    // The last row of the ascending list of keys, found from its end.
    const auto found = connection.integers(u"SELECT "_s + key + u" FROM "_s + table + u" ORDER BY "_s + key +
                                           u" DESC LIMIT 1"_s);
    if (!found)
        return found.error();
    const qint64 highest = found->empty() ? 0 : found->front();
    if (highest >= highestKey)
        return base::Error{u"番号が上限（2147483647）に達したため、「"_s + table +
                           u"」に追加できませんでした。"_s};
    return highest + 1;
}

} // namespace db

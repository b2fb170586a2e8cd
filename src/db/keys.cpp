#include "db/keys.h"

#include "db/connection.h"
#include "db/schema.h"
#include "db/transaction.h"

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

// Each number asks for the next one as long as it is named; the last one asked for is free.
base::Result<qint64> unusedKey(Connection &connection, qint64 next, const References &references)
{
    Condition named{references.column + u" = 番号.n"_s, {}};
    named &= references.condition;
    const auto last = connection.integers(
        u"SELECT MAX(n) FROM (WITH RECURSIVE 番号 (n) AS (SELECT ? UNION ALL SELECT n + 1 FROM 番号 "
        "WHERE n <= ? AND EXISTS (SELECT 1 FROM %1 WHERE %2)) SELECT n FROM 番号) AS 順"_s.arg(
            references.table, named.sql),
        QVariantList{next, highestKey} + named.values);
    if (!last)
        return last.error();
    if (last->front() > highestKey)
        return base::Error{u"番号が上限（2147483647）に達したため、追加できませんでした。"_s};
    return last->front();
}

base::Result<qint64> nextVersion(Connection &connection)
{
    const auto raised = connection.select(u"UPDATE 版数 SET 最終 = 最終 + 1 RETURNING 最終"_s);
    if (!raised)
        return raised.error();
    if (raised->count() != 1)
        return base::Error{u"データベースの版数を読み取れないため、保存できませんでした。「環境設定」の"
                           "「データベースの再作成」で、新しいファイルに移せます。"_s};
    return raised->rows.front().front().toLongLong();
}

base::Result<int> deleteRows(Connection &connection, const QString &statement, const QVariantList &values)
{
    return atomically(connection, [&]() -> base::Result<int> {
        const auto raised = nextVersion(connection);
        return raised ? connection.execute(statement, values) : raised.error();
    });
}

} // namespace db

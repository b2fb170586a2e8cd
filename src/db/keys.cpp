#include "db/keys.h"

#include "db/connection.h"
#include "db/schema.h"
#include "db/transaction.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

base::Error usedUp(const QString &table)
{
    return {u"番号が上限（2147483647）に達したため、「"_s + table + u"」に追加できませんでした。"_s};
}

// The key below the highest gap; 0 where all keys stand close together up to the last one.
base::Result<qint64> highestBeforeGap(Connection &connection, const QString &table)
{
    const QString key = keyOf(table);
    const auto found = connection.integers(
        u"SELECT 前.%1 FROM %2 AS 前 WHERE 前.%1 < ? AND NOT EXISTS "
        "(SELECT 1 FROM %2 AS 次 WHERE 次.%1 = 前.%1 + 1) ORDER BY 前.%1 DESC LIMIT 1"_s.arg(key, table),
        {highestKey});
    if (!found)
        return found.error();
    return found->empty() ? 0 : std::max<qint64>(found->front(), 0);
}

} // namespace

// A single stray row under the last key of all, of a damaged or foreign book, does not use up all others.
base::Result<qint64> nextKey(Connection &connection, const QString &table)
{
    const QString key = keyOf(table);
    // The last row of the ascending list of keys, found from its end.
    const auto found = connection.integers(u"SELECT "_s + key + u" FROM "_s + table + u" ORDER BY "_s + key +
                                           u" DESC LIMIT 1"_s);
    if (!found)
        return found.error();
    const qint64 highest = found->empty() ? 0 : found->front();
    if (highest < highestKey)
        return highest + 1;
    const auto before = highestBeforeGap(connection, table);
    if (!before)
        return before;
    const auto taken = connection.integers(
        u"SELECT "_s + key + u" FROM "_s + table + u" WHERE "_s + key + u" = ?"_s, {*before + 1});
    if (!taken)
        return taken.error();
    return taken->empty() ? base::Result<qint64>(*before + 1) : usedUp(table);
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
    // The law has them kept for years (所得税法施行規則第63条, 法人税法施行規則第59条).
    if (statement.contains(u"発行控"_s))
        return base::Error{u"発行した書類の控えは削除できません。"_s};
    return atomically(connection, [&]() -> base::Result<int> {
        const auto raised = nextVersion(connection);
        return raised ? connection.execute(statement, values) : raised.error();
    });
}

} // namespace db

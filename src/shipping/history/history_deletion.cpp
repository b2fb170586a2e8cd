#include "shipping/history/history_deletion.h"

#include "db/connection.h"
#include "db/keys.h"
#include "db/transaction.h"

#include <QMap>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

// " WHERE (発送区分 = ?)", or nothing for all.
db::Condition whereOf(const HistoryPart &part)
{
    if (!part.category)
        return {};
    if (part.category->isEmpty())
        return {u" WHERE (発送区分 IS NULL OR 発送区分 = '')"_s, {}};
    return {u" WHERE (発送区分 = ?)"_s, {*part.category}};
}

} // namespace

base::Result<std::vector<CategoryCount>> categoriesInHistory(db::Connection &connection)
{
    const auto found = connection.select(u"SELECT 発送区分, COUNT(*) FROM 発送マスター GROUP BY 発送区分"_s);
    if (!found)
        return found.error();
    QMap<QString, qint64> counts; // shipments without a category have none, or an empty one
    for (const QVariantList &row : found->rows)
        counts[row.at(0).toString()] += row.at(1).toLongLong();
    std::vector<CategoryCount> categories;
    for (const auto &[category, shipments] : counts.asKeyValueRange())
        categories.push_back({category, shipments});
    return categories;
}

base::Result<HistoryExtent> extentOf(db::Connection &connection, const HistoryPart &part)
{
    const db::Condition where = whereOf(part);
    const auto found =
        connection.select(u"SELECT COUNT(*), MIN(NULLIF(受付日, '')), MAX(受付日), "
                          "COUNT(CASE WHEN coalesce(送り状番号, '') = '' THEN 1 END) FROM 発送マスター"_s +
                              where.sql,
                          where.values);
    if (!found)
        return found.error();
    const QVariantList &row = found->rows.front();
    return HistoryExtent{row.at(0).toLongLong(), row.at(1).toString(), row.at(2).toString(),
                         row.at(3).toLongLong()};
}

base::Result<qint64> deleteHistory(db::Connection &connection, const HistoryPart &part,
                                   const HistoryExtent &shown)
{
    return db::atomically(connection, [&]() -> base::Result<qint64> {
        const auto now = extentOf(connection, part);
        if (!now)
            return now.error();
        if (*now != shown)
            return base::Error{.text = u"ほかのプログラムで発送履歴が変わったため、何も削除していません。"
                                       "件数を確かめてから、もう一度実行してください。"_s,
                               .changed = true};
        const db::Condition where = whereOf(part);
        const auto deleted =
            db::deleteRows(connection, u"DELETE FROM 発送マスター"_s + where.sql, where.values);
        return deleted ? base::Result<qint64>(*deleted) : deleted.error();
    });
}

} // namespace shipping

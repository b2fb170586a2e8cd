#include "slips/issued/carried_documents.h"

#include "db/keys.h"
#include "db/transaction.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

const QString columns = u"発行ID, 種類, 番号, 日付, 伝票種別, 相手先ID, 相手先名, 税込金額, 発行日時, "
                        "社員名, 訂正元, 取消日, ハッシュ, 内容"_s;
constexpr qsizetype keyColumn = 0;
constexpr qsizetype correctedColumn = 10;

// Whether the document with the key of \a row is the same one.
base::Result<bool> isThere(db::Connection &connection, const QVariantList &row, bool &isTaken)
{
    const auto found =
        connection.select(u"SELECT "_s + columns + u" FROM 発行控 WHERE 発行ID = ?"_s, {row.at(keyColumn)});
    if (!found)
        return found.error();
    isTaken = !found->isEmpty();
    return isTaken && found->rows.front() == row;
}

base::Status add(db::Connection &connection, const QVariantList &row)
{
    return connection
        .execute(u"INSERT INTO 発行控 ("_s + columns +
                     u") VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"_s,
                 row)
        .status();
}

} // namespace

base::Result<IssuedRows> allIssuedRows(db::Connection &connection)
{
    auto found = connection.select(u"SELECT "_s + columns + u" FROM 発行控 ORDER BY 発行ID"_s);
    if (!found)
        return found.error();
    return IssuedRows(found->rows.begin(), found->rows.end());
}

base::Result<int> carryOver(db::Connection &connection, const IssuedRows &rows)
{
    return db::atomically(connection, [&]() -> base::Result<int> {
        int carried = 0;
        QHash<qint64, qint64> newKeys;
        for (QVariantList row : rows) {
            bool isTaken = false;
            const auto there = isThere(connection, row, isTaken);
            if (!there)
                return there.error();
            if (*there)
                continue;
            if (isTaken) {
                const auto next = db::nextKey(connection, u"発行控"_s);
                if (!next)
                    return next.error();
                newKeys.insert(row.at(keyColumn).toLongLong(), *next);
                row[keyColumn] = *next;
            }
            if (const auto moved = newKeys.constFind(row.at(correctedColumn).toLongLong());
                moved != newKeys.constEnd())
                row[correctedColumn] = *moved;
            if (const base::Status added = add(connection, row); !added)
                return added.error();
            ++carried;
        }
        return carried;
    });
}

} // namespace slips

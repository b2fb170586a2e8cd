#include "book/slip_move.h"

#include "book/slip_counts.h"
#include "book/slip_selection.h"

using namespace Qt::StringLiterals;

namespace book
{

base::Result<QStringList> openSlipsOf(db::Connection &connection, Party party, qint64 counterpart)
{
    const Condition condition =
        slipsOf({.kinds = kindsOf(party), .counterpart = CounterpartKey(counterpart)});
    const auto found = connection.select(u"SELECT 伝票番号 FROM 入出庫マスター WHERE 完了 = 0 AND "_s +
                                             condition.sql + u" ORDER BY ID"_s,
                                         condition.values);
    if (!found)
        return found.error();
    QStringList numbers;
    for (const QVariantList &row : found->rows)
        numbers << row.front().toString();
    return numbers;
}

base::Result<int> moveSlips(db::Connection &connection, Party party, qint64 from, qint64 to, qint64 version)
{
    const Condition slips = slipsOf({.kinds = kindsOf(party), .counterpart = CounterpartKey(from)});
    const auto moved =
        connection.execute(u"UPDATE 入出庫マスター SET 相手先ID = ?, 版 = ? WHERE "_s + slips.sql,
                           QVariantList{to, version} + slips.values);
    if (!moved)
        return moved;
    // Those who look for a counterpart's documents look by its key; the name that was printed stays.
    const Condition issued = documentsOf(party);
    const auto documents =
        connection.execute(u"UPDATE 発行控 SET 相手先ID = ? WHERE 相手先ID = ? AND "_s + issued.sql,
                           QVariantList{to, from} + issued.values);
    return documents ? moved : documents;
}

} // namespace book

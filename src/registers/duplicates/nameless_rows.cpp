#include "registers/duplicates/nameless_rows.h"

#include "book/counterpart_search.h"
#include "book/slip_counts.h"
#include "db/connection.h"
#include "db/keys.h"
#include "db/transaction.h"

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr int pieceSize = 2000; // rows

// Blanks of either width are no name.
QString isNameless(book::Party party)
{
    return u"(TRIM(COALESCE(%1名1, '') || COALESCE(%1名2, ''), ' 　') = '')"_s.arg(book::tableOf(party));
}

base::Result<qint64> slipsOf(db::Connection &connection, book::Party party, qint64 id)
{
    return book::countSlips(connection,
                            {.kinds = book::kindsOf(party), .counterpart = book::CounterpartKey(id)});
}

// What must not lose whom it belongs to.
book::Condition isUnused(book::Party party)
{
    const QString table = book::tableOf(party);
    book::Condition condition = book::slipsOf({.kinds = book::kindsOf(party)});
    condition.sql =
        u"NOT EXISTS (SELECT 1 FROM 入出庫マスター WHERE 相手先ID = %1ID AND %2)"_s.arg(table, condition.sql);
    if (party == book::Party::Customer)
        condition.sql += u" AND NOT EXISTS (SELECT 1 FROM 発送マスター AS 発送 WHERE 発送.納品先ID = "
                         "納品先.納品先ID OR 発送.依頼主ID = 納品先.納品先ID)"_s;
    return condition;
}

} // namespace

base::Result<std::vector<NamelessRow>> namelessRows(db::Connection &connection, book::Party party, int most)
{
    const bool isCustomer = party == book::Party::Customer;
    const auto found = connection.select(
        u"SELECT %1ID, コード, 住所1, 住所2, TEL1, %2 FROM %1 WHERE %3 ORDER BY %1ID DESC LIMIT ?"_s.arg(
            book::tableOf(party), isCustomer ? u"更新日"_s : u"NULL"_s, isNameless(party)),
        {most});
    if (!found)
        return found.error();
    std::vector<NamelessRow> rows;
    for (auto row = found->rows.crbegin(); row != found->rows.crend(); ++row) {
        const auto text = [&row](int column) { return row->at(column).toString(); };
        const qint64 id = row->front().toLongLong();
        const auto slips = slipsOf(connection, party, id);
        if (!slips)
            return slips.error();
        rows.push_back({id, text(1), text(2) + text(3), text(4), text(5), *slips});
    }
    return rows;
}

base::Result<int> deleteNameless(db::Connection &connection, book::Party party,
                                 const std::vector<qint64> &ids)
{
    const QString table = book::tableOf(party);
    const book::Condition unused = isUnused(party);
    const QString statement =
        u"DELETE FROM %1 WHERE %1ID = ? AND %2 AND "_s.arg(table, isNameless(party)) + unused.sql;
    return db::atomically(connection, [&]() -> base::Result<int> {
        int deleted = 0;
        for (const qint64 id : ids) {
            const auto gone = db::deleteRows(connection, statement, QVariantList{id} + unused.values);
            if (!gone)
                return gone;
            deleted += *gone;
        }
        return deleted;
    });
}

base::Status NamelessCount::readOn()
{
    const auto piece = m_connection->select(
        u"SELECT MIN(番号), COUNT(*), SUM(無名) FROM (SELECT %1ID AS 番号, CASE WHEN %2 THEN 1 ELSE 0 END "
        "AS 無名 FROM %1 WHERE %1ID < ? ORDER BY %1ID DESC LIMIT ?) AS 部分"_s.arg(book::tableOf(m_party),
                                                                                   isNameless(m_party)),
        {m_before, pieceSize});
    if (!piece)
        return piece.error();
    const QVariantList &row = piece->rows.front();
    m_isComplete = row.at(1).toInt() < pieceSize;
    m_count += row.at(2).toLongLong();
    m_before = row.front().toLongLong();
    return {};
}

} // namespace registers

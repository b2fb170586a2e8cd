#include "slips/issued/issued_search.h"

#include "db/condition.h"
#include "slips/issued/issued_documents.h"
#include "slips/issued/withdrawn_prints.h"
#include "text/dates.h"
#include "text/like.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

// One bound alone is a range that is open on the other side.
db::Condition inRange(const QString &column, QVariant low, QVariant high, bool isTurned)
{
    if (isTurned)
        std::swap(low, high);
    db::Condition condition;
    if (low.isValid())
        condition &= {column + u" >= ?"_s, {low}};
    if (high.isValid())
        condition &= {column + u" <= ?"_s, {high}};
    return condition;
}

// Such documents lie far apart in the order of their dates: they are found by their own condition and sorted
// then. All others are walked through in that order, and the first ones show at once.
bool isSelective(const IssuedQuery &query)
{
    return query.least || query.most || !query.counterpart.trimmed().isEmpty() ||
           !query.number.trimmed().isEmpty();
}

// Who types digits alone leaves the letter out.
QString numberPattern(const QString &number)
{
    const QString rest = text::literalPattern(number) + u'%';
    return number.front().isDigit() ? u'%' + rest : rest;
}

QVariant bound(const QDate &date) { return date.isValid() ? QVariant(text::stored(date)) : QVariant(); }

QVariant bound(const std::optional<double> &amount) { return amount ? QVariant(*amount) : QVariant(); }

IssuedRow rowOf(const QVariantList &values)
{
    return {.key = values.at(0).toLongLong(),
            .kind = values.at(1).toString(),
            .number = values.at(2).toString(),
            .date = values.at(3).toString(),
            .counterpartName = values.at(4).toString(),
            .amount = values.at(5).toDouble(),
            .issuedAt = values.at(6).toString(),
            .employee = values.at(7).toString(),
            .corrected = values.at(8).isNull() ? std::nullopt : std::optional(values.at(8).toLongLong()),
            .hash = values.at(9).toString()};
}

} // namespace

db::Query findingIssued(const IssuedQuery &query)
{
    const bool datesTurned = query.from.isValid() && query.to.isValid() && query.from > query.to;
    const bool amountsTurned = query.least && query.most && *query.least > *query.most;
    db::Condition condition = inRange(u"日付"_s, bound(query.from), bound(query.to), datesTurned);
    // Where there are dates, theirs is the index to go by; without figures of its own the database cannot
    // tell.
    const bool hasDates = query.from.isValid() || query.to.isValid();
    condition &= inRange(hasDates ? u"税込金額 + 0"_s : u"税込金額"_s, bound(query.least), bound(query.most),
                         amountsTurned);
    if (!query.kind.isEmpty())
        condition &= {u"種類 IN (?, ?, ?)"_s,
                      {query.kind, query.kind + QString::fromUtf16(reissueMark),
                       query.kind + QString::fromUtf16(withdrawnMark)}};
    if (!query.number.trimmed().isEmpty())
        condition &= {u"番号 LIKE ? ESCAPE '\\'"_s, {numberPattern(query.number.trimmed())}};
    if (!query.counterpart.trimmed().isEmpty())
        condition &= db::keyHolds(u"相手先名"_s, query.counterpart);
    return {.table = u"発行控"_s,
            .where = condition.sql,
            .order = {isSelective(query) ? u"coalesce(日付, '') DESC"_s : u"日付 DESC"_s, u"発行ID DESC"_s},
            .values = condition.values};
}

DocumentPlace IssuedRow::place() const { return {QDate::fromString(date, Qt::ISODate), hash}; }

QString IssuedRow::words() const { return kind + u' ' + number + u'　' + counterpartName; }

base::Result<qint64> countIssued(db::Connection &connection, const QString &number)
{
    const auto found = connection.integers(u"SELECT COUNT(*) FROM 発行控 WHERE 番号 = ?"_s, {number});
    return found ? base::Result<qint64>(found->front()) : found.error();
}

base::Result<Fate> fateOf(db::Connection &connection, qint64 key)
{
    const auto later =
        connection.select(u"SELECT 発行ID, 種類 FROM 発行控 WHERE 訂正元 = ? ORDER BY 発行ID"_s, {key});
    if (!later)
        return later.error();
    Fate fate;
    for (const QVariantList &row : later->rows) {
        if (row.at(1).toString().endsWith(QString::fromUtf16(withdrawnMark)))
            fate.isWithdrawn = true;
        else if (!fate.successor)
            fate.successor = row.at(0).toLongLong();
    }
    return fate;
}

// By the number, which few rows have; a customer may have years of them, so that his index is kept out of it.
base::Result<std::optional<LastIssue>> lastIssue(db::Connection &connection, const QString &kind,
                                                 const QString &number, qint64 counterpart)
{
    const auto found = connection.select(
        u"SELECT 発行日時, 税込金額 FROM 発行控 d WHERE 番号 = ? AND 種類 IN (?, ?) AND 相手先ID + 0 = ? "
        "AND NOT EXISTS (SELECT 1 FROM 発行控 w WHERE w.訂正元 = d.発行ID AND w.種類 = ?) "
        "ORDER BY 発行ID DESC LIMIT 1"_s,
        {number, kind, kind + QString::fromUtf16(reissueMark), counterpart,
         kind + QString::fromUtf16(withdrawnMark)});
    if (!found)
        return found.error();
    if (found->isEmpty())
        return std::optional<LastIssue>();
    const QVariantList &row = found->rows.front();
    return std::optional<LastIssue>({row.at(0).toString(), row.at(1).toDouble()});
}

base::Result<std::vector<IssuedRow>> readIssued(db::Connection &connection, const std::vector<qint64> &keys)
{
    std::vector<IssuedRow> rows;
    rows.reserve(keys.size());
    for (const qint64 key : keys) {
        const auto found = connection.select(
            u"SELECT 発行ID, 種類, 番号, 日付, 相手先名, 税込金額, 発行日時, 社員名, 訂正元, ハッシュ "
            "FROM 発行控 WHERE 発行ID = ?"_s,
            {key});
        if (!found)
            return found.error();
        if (!found->isEmpty())
            rows.push_back(rowOf(found->rows.front()));
    }
    return rows;
}

base::Result<std::vector<qint64>> allIssued(db::Connection &connection)
{
    return connection.integers(u"SELECT 発行ID FROM 発行控 ORDER BY 発行ID"_s);
}

} // namespace slips

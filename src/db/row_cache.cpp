#include "db/row_cache.h"

#include "db/connection.h"
#include "db/long_value.h"

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

// About a megabyte of rows; more are read again when they are looked at again.
constexpr int rowsKept = 4096;

} // namespace

void RowCache::reset(const Query &query)
{
    m_query = query;
    m_rows.clear();
}

void RowCache::read(const QVariantList &keys, qint64 kept)
{
    if (m_rows.size() >= rowsKept)
        m_rows.removeIf([kept](const auto &row) { return row.key() != kept; });
    QVariantList wanted;
    for (const QVariant &key : keys) {
        if (!has(key.toLongLong()))
            wanted << key;
    }
    if (wanted.isEmpty())
        return;
    // One statement text for blocks of any size, so that it is prepared once.
    while (wanted.size() > 1 && wanted.size() < blockSize)
        wanted << wanted.constLast();
    const QString places = QStringList(wanted.size(), u"?"_s).join(u", "_s);
    const auto rows =
        m_connection->select(u"SELECT "_s + m_query.key() + u", "_s + m_query.columns + u" FROM "_s +
                                 m_query.table + u" WHERE "_s + m_query.key() + u" IN ("_s + places + u")"_s,
                             wanted);
    for (const QVariant &key : std::as_const(wanted))
        m_rows.insert(key.toLongLong(), {{}, bool(rows)});
    if (!rows)
        return;
    for (const QVariantList &row : rows->rows) {
        QVariantList values = row.mid(1);
        const QList<int> cut = shorten(values);
        m_rows.insert(row.constFirst().toLongLong(), {values, true, cut});
    }
}

void RowCache::refresh(qint64 key)
{
    const Row known = m_rows.take(key);
    read({key}, key);
    if (!at(key).isRead && known.isRead)
        m_rows.insert(key, known);
}

} // namespace db

// Rows of a record set edited, written, added and removed.
#include "db/keys.h"
#include "db/recordset.h"
#include "db/transaction.h"
#include "text/numbers.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace db
{

QVariant Recordset::value(const QString &column) const
{
    const int index = columnOf(column);
    if (m_current < 0 || index < 0)
        return {};
    const auto edit = m_edits.constFind(index);
    return edit != m_edits.constEnd() ? *edit : stored(m_current, index);
}

void Recordset::setValue(const QString &column, const QVariant &value)
{
    const int index = columnOf(column);
    if (m_current < 0 || index < 0)
        return;
    const QVariant old = stored(m_current, index);
    const QVariant now = coerced(index, value);
    // To the clerk an empty box is the same whether the file holds NULL or an empty text.
    if (now == old || (now.toString().isEmpty() && old.toString().isEmpty())) {
        if (m_edits.remove(index) == 0)
            return;
    } else {
        m_edits.insert(index, now);
    }
    rowChanged(m_current);
    emit edited();
}

QVariant Recordset::coerced(int column, const QVariant &value) const
{
    if (value.isNull() || value.typeId() != QMetaType::QString)
        return value;
    switch (m_types.at(column)) {
    case QMetaType::LongLong: {
        const auto number = text::parseInteger(value.toString());
        return number ? QVariant(*number) : QVariant();
    }
    case QMetaType::Double: {
        const auto number = text::parseNumber(value.toString());
        return number ? QVariant(*number) : QVariant();
    }
    default:
        return value;
    }
}

base::Status Recordset::update(const Step &before)
{
    if (m_current < 0 || m_edits.isEmpty())
        return {};
    const base::Status done = atomically(m_connection, [&] {
        const base::Status prepared = before ? before() : base::Status();
        return prepared ? write() : prepared;
    });
    if (done)
        written();
    return done;
}

base::Status Recordset::updateWith(Recordset &other, const Step &before)
{
    if (!other.isDirty())
        return update(before);
    const base::Status done = other.update([&] {
        if (!isDirty())
            return m_guarded ? checkAsRead() : base::Status();
        if (const base::Status prepared = before ? before() : base::Status(); !prepared)
            return prepared;
        return write();
    });
    if (done && isDirty())
        written();
    return done;
}

// The edits into the file, inside the transaction of the caller.
base::Status Recordset::write()
{
    if (m_rows.has(currentKey()) && !m_rows.at(currentKey()).isRead) {
        refresh();
        return base::Error{
            u"表示中のデータを読み取れなかったため、保存できませんでした。表示を確認してから、もう一度実行してください。"_s};
    }
    if (const base::Status same = m_guarded ? checkAsRead() : base::Status(); !same)
        return same;
    QStringList assignments;
    QVariantList values;
    for (auto edit = m_edits.cbegin(); edit != m_edits.cend(); ++edit) {
        assignments << m_columns.at(edit.key()) + u" = ?"_s;
        values << edit.value();
    }
    values << currentKey();
    const auto changed =
        m_connection.execute(u"UPDATE "_s + m_query.table + u" SET "_s + assignments.join(u", "_s) +
                                 u" WHERE "_s + m_key + u" = ?"_s,
                             values);
    if (!changed)
        return changed.error();
    if (*changed == 0)
        return base::Error{u"表示中のデータはほかのプログラムで削除されたため、保存できませんでした。"_s};
    return {};
}

void Recordset::written()
{
    m_edits.clear();
    refresh();
}

base::Status Recordset::checkAsRead() const
{
    const auto now = m_connection.select(u"SELECT "_s + m_query.columns + u" FROM "_s + m_query.table +
                                             u" WHERE "_s + m_key + u" = ?"_s,
                                         {currentKey()});
    if (!now)
        return now.error();
    if (now->isEmpty())
        return base::Error{u"表示中のデータはほかのプログラムで削除されたため、変更できませんでした。"_s};
    for (int column = 0; column < columnCount(); ++column) {
        if (now->rows.front().at(column) != stored(m_current, column))
            return base::Error{
                u"表示中のデータはほかのプログラムで変更されたため、変更できませんでした。表示を確認してから、もう一度実行してください。"_s};
    }
    return {};
}

void Recordset::revert()
{
    if (!isDirty())
        return;
    m_edits.clear();
    rowChanged(m_current);
    emit currentRowChanged(m_current);
    emit edited();
}

base::Result<qint64> Recordset::add(const QVariantMap &values)
{
    const auto added = atomically(m_connection, [&]() -> base::Result<qint64> {
        const auto key = nextKey(m_connection, m_query.table);
        if (!key)
            return key;
        QStringList names{m_key};
        QVariantList bound{*key};
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            names << value.key();
            bound << value.value();
        }
        const auto done =
            m_connection.execute(u"INSERT INTO "_s + m_query.table + u" ("_s + names.join(u", "_s) +
                                     u") VALUES ("_s + placeholders(names.size()) + u")"_s,
                                 bound);
        return done ? key : done.error();
    });
    if (added)
        inserted(*added);
    return added;
}

base::Status Recordset::append(const QVariantMap &values)
{
    const auto row = atomically(m_connection, [&]() -> base::Result<std::vector<qint64>> {
        const auto added = m_connection.execute(u"INSERT INTO "_s + m_query.table + u" ("_s +
                                                    QStringList(values.keys()).join(u", "_s) +
                                                    u") VALUES ("_s + placeholders(values.size()) + u")"_s,
                                                values.values());
        if (!added)
            return added.error();
        return m_connection.integers(u"SELECT last_insert_rowid()"_s);
    });
    if (row)
        inserted(row->front());
    return row.status();
}

void Recordset::inserted(qint64 key)
{
    m_rows.forget(key);
    // A new row stands last, whatever the order, unless it has come along with the last ones just now.
    if (!m_keys.hasEnd(KeySet::End::Last))
        (void)readEnd(KeySet::End::Last);
    if (const int known = m_keys.rowOf(key); known >= 0) {
        setCurrent(known);
        return;
    }
    const int row = count();
    beginInsertRows({}, row, row);
    m_keys.append(key);
    endInsertRows();
    setCurrent(row);
}

base::Status Recordset::remove(const Step &before)
{
    if (m_current < 0)
        return {};
    const base::Status done = atomically(m_connection, [&]() -> base::Status {
        if (const base::Status same = m_guarded ? checkAsRead() : base::Status(); !same)
            return same;
        if (const base::Status prepared = before ? before() : base::Status(); !prepared)
            return prepared;
        return m_connection
            .execute(u"DELETE FROM "_s + m_query.table + u" WHERE "_s + m_key + u" = ?"_s, {currentKey()})
            .status();
    });
    if (done)
        removed();
    return done;
}

void Recordset::removed()
{
    reach(m_current + 1);
    const int row = m_current;
    m_edits.clear();
    // Grids move off the row that goes; nothing of it is to be settled any more.
    Step leaving = std::exchange(m_leaving, {});
    beginRemoveRows({}, row, row);
    m_rows.forget(keyAt(row));
    m_keys.remove(row);
    m_current = std::min(row, count() - 1);
    endRemoveRows();
    m_leaving = std::move(leaving);
    emit currentRowChanged(m_current);
}

} // namespace db

// Rows of a record set edited, written, added and removed.
#include "db/keys.h"
#include "db/long_value.h"
#include "db/recordset.h"
#include "db/schema.h"
#include "db/transaction.h"
#include "text/numbers.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

base::Error changedByOthers()
{
    return {
        .text =
            u"表示中のデータはほかのプログラムで変更されたため、変更できませんでした。表示を確認してから、もう一度実行してください。"_s,
        .changed = true};
}

} // namespace

QVariant Recordset::value(const QString &column) const
{
    const int index = columnOf(column);
    if (m_current < 0 || index < 0)
        return {};
    const auto edit = m_edits.constFind(index);
    return edit != m_edits.constEnd() ? *edit : stored(m_current, index);
}

bool Recordset::isCut(const QString &column) const
{
    const int index = columnOf(column);
    return m_current >= 0 && index >= 0 && isCut(m_current, index);
}

void Recordset::setValue(const QString &column, const QVariant &value)
{
    const int index = columnOf(column);
    if (m_current < 0 || index < 0)
        return;
    if (isCut(m_current, index))
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
    const base::Status done = atomically(m_connection, [&]() -> base::Status {
        if (const base::Status prepared = before ? before() : base::Status(); !prepared)
            return prepared;
        if (const base::Status kept = isDirty() ? write() : checkAsRead(); !kept)
            return kept;
        return other.isDirty() ? other.write() : base::Status();
    });
    if (!done)
        return done;
    for (Recordset *written : {&other, this}) {
        if (written->isDirty())
            written->written();
    }
    return done;
}

// The edits into the file, inside the transaction of the caller.
base::Status Recordset::write()
{
    if (isNewRow())
        return insertNewRow();
    if (m_rows.has(currentKey()) && !m_rows.at(currentKey()).isRead) {
        refresh();
        return base::Error{
            u"表示中のデータを読み取れなかったため、保存できませんでした。表示を確認してから、もう一度実行してください。"_s};
    }
    if (const base::Status same = checkAsRead(); !same)
        return same.error().gone ? base::Error{.text = u"表示中のデータはほかのプログラムで削除されたため、"
                                                       "保存できませんでした。"_s,
                                               .gone = true}
                                 : same.error();
    QStringList assignments;
    QVariantList values;
    for (auto edit = m_edits.cbegin(); edit != m_edits.cend(); ++edit) {
        assignments << m_columns.at(edit.key()) + u" = ?"_s;
        values << edit.value();
    }
    if (bearsVersion(m_query.table)) {
        const auto version = nextVersion(m_connection);
        if (!version)
            return version.error();
        assignments << u"版 = ?"_s;
        values << *version;
    }
    values << currentKey();
    const auto changed =
        m_connection.execute(u"UPDATE "_s + m_query.table + u" SET "_s + assignments.join(u", "_s) +
                                 u" WHERE "_s + m_key + u" = ?"_s + versionAsRead(values),
                             values);
    if (!changed)
        return changed.error();
    return *changed > 0 ? base::Status() : changedByOthers();
}

// The condition that the current row's 版 is as it was read; its value is put to \a values.
QString Recordset::versionAsRead(QVariantList &values) const
{
    const int column = columnOf(u"版"_s);
    if (column < 0)
        return {};
    const QVariant version = stored(m_current, column);
    if (version.isNull())
        return u" AND 版 IS NULL"_s;
    values << version;
    return u" AND 版 = ?"_s;
}

void Recordset::written()
{
    m_edits.clear();
    if (isNewRow()) {
        m_newRow = {};
        m_keys.remove(m_current);
        m_keys.append(m_newKey);
    }
    refresh();
}

base::Result<QVariantList> Recordset::readCurrent() const
{
    auto now = m_connection.select(u"SELECT "_s + m_query.columns + u" FROM "_s + m_query.table +
                                       u" WHERE "_s + m_key + u" = ?"_s,
                                   {currentKey()});
    if (!now)
        return now.error();
    if (now->isEmpty())
        return base::Error{.text =
                               u"表示中のデータはほかのプログラムで削除されたため、変更できませんでした。"_s,
                           .gone = true};
    (void)shorten(now->rows.front()); // as the row here is
    return now->rows.front();
}

base::Status Recordset::checkAsRead() const
{
    if (isNewRow())
        return {};
    const auto now = readCurrent();
    if (!now)
        return now.error();
    for (int column = 0; column < columnCount(); ++column) {
        if (m_columns.at(column) != u"更新日" && now->at(column) != stored(m_current, column))
            return changedByOthers();
    }
    return {};
}

base::Result<std::vector<Recordset::Difference>> Recordset::differences() const
{
    if (isNewRow())
        return std::vector<Difference>();
    const auto now = readCurrent();
    if (!now)
        return now.error();
    std::vector<Difference> found;
    for (int column = 0; column < columnCount(); ++column) {
        const QString &name = m_columns.at(column);
        const QVariant mine = m_edits.value(column, stored(m_current, column));
        if (name != u"版" && name != u"更新日" && mine.toString() != now->at(column).toString())
            found.push_back({name, m_edits.contains(column), mine, now->at(column)});
    }
    return found;
}

void Recordset::revert()
{
    if (isNewRow()) {
        removed();
    } else if (isDirty()) {
        m_edits.clear();
        rowChanged(m_current);
        emit currentRowChanged(m_current);
    } else {
        return;
    }
    emit edited();
}

base::Result<qint64> Recordset::add(const QVariantMap &values, const KeyChoice &choice)
{
    const auto added = atomically(m_connection, [&]() -> base::Result<qint64> {
        const auto next = nextKey(m_connection, m_query.table);
        const auto key = next && choice ? choice(*next) : next;
        if (!key)
            return key;
        QVariantMap row = values;
        row.insert(m_key, *key);
        const base::Status done = insert(row);
        return done ? key : done.error();
    });
    if (added)
        inserted(*added);
    return added;
}

// A row into the file, inside the transaction of the caller.
base::Status Recordset::insert(const QVariantMap &values)
{
    QStringList names = values.keys();
    QString places = placeholders(names.size());
    if (bearsVersion(m_query.table)) {
        names << u"版"_s;
        places += u", (SELECT 最終 FROM 版数)"_s;
    }
    return m_connection
        .execute(u"INSERT INTO "_s + m_query.table + u" ("_s + names.join(u", "_s) + u") VALUES ("_s +
                     places + u')',
                 values.values())
        .status();
}

void Recordset::inserted(qint64 key)
{
    if (isNewRow())
        removed();
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
    if (isNewRow()) {
        removed();
        return {};
    }
    bool isThere = true;
    const base::Status done = atomically(m_connection, [&]() -> base::Status {
        if (const base::Status same = checkAsRead(); !same) {
            isThere = !same.error().gone;
            return same;
        }
        if (const base::Status prepared = before ? before() : base::Status(); !prepared)
            return prepared;
        return deleteRows(m_connection, u"DELETE FROM "_s + m_query.table + u" WHERE "_s + m_key + u" = ?"_s,
                          {currentKey()})
            .status();
    });
    if (done || !isThere) { // another program has done it already
        removed();
        return {};
    }
    if (done.error().changed)
        refresh(); // the clerk sees what the row has become
    return done;
}

void Recordset::removed()
{
    reach(m_current + 1);
    const int row = m_current;
    m_edits.clear();
    // Grids move off the row that goes; nothing of it is to be settled any more.
    Step leaving = std::exchange(m_leaving, {});
    if (isNewRow())
        m_newRow = {};
    beginRemoveRows({}, row, row);
    m_rows.forget(keyAt(row));
    m_keys.remove(row);
    m_current = std::min(row, count() - 1);
    endRemoveRows();
    m_leaving = std::move(leaving);
    emit currentRowChanged(m_current);
}

// --- A row that is not in the file yet ---

bool Recordset::isNewRow() const { return m_current >= 0 && keyAt(m_current) == newRowKey; }

base::Status Recordset::beginRow(const QVariantMap &values)
{
    if (isNewRow() && !isDirty())
        return {};
    if (const base::Status read = readAll(); !read)
        return read;
    if (const base::Status settled = settle(); !settled)
        return settled;
    m_newValues = values;
    m_newRow = {{}, true};
    for (const QString &column : std::as_const(m_columns))
        m_newRow.values << values.value(column);
    const int row = count();
    beginInsertRows({}, row, row);
    m_keys.append(newRowKey);
    endInsertRows();
    setCurrent(row);
    return {};
}

base::Status Recordset::insertNewRow()
{
    QVariantMap values = m_newValues;
    for (auto edit = m_edits.cbegin(); edit != m_edits.cend(); ++edit)
        values.insert(m_columns.at(edit.key()), edit.value());
    if (const base::Status inserted = insert(values); !inserted)
        return inserted;
    const auto key = m_connection.integers(u"SELECT last_insert_rowid()"_s);
    if (key)
        m_newKey = key->front();
    return key.status();
}

// Nothing was typed into it, or what was is not wanted.
void Recordset::dropLeftRow()
{
    const int row = m_newRow.isRead ? m_keys.rowOf(newRowKey) : -1;
    if (row < 0 || row == m_current)
        return;
    m_newRow = {};
    beginRemoveRows({}, row, row);
    m_keys.remove(row);
    endRemoveRows();
}

} // namespace db

#include "db/recordset.h"

#include "db/no_waiting.h"
#include "text/format_value.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

// The first page is drawn before the keys of further ones are read; milliseconds.
constexpr int beforeReadingOn = 20;

// A file that cannot be read now, as it is locked perhaps, is tried again; milliseconds.
constexpr int firstPause = 50;
constexpr int longestPause = 2000;

QMetaType::Type typeOf(const QString &declared)
{
    if (declared == "INTEGER"_L1)
        return QMetaType::LongLong;
    return declared == "REAL"_L1 ? QMetaType::Double : QMetaType::QString;
}

} // namespace

Recordset::Recordset(Connection &connection, QObject *parent, Pace pace)
    : QAbstractTableModel(parent)
    , m_connection(connection)
    , m_keys(connection, pace)
    , m_pace(pace)
    , m_rows(connection)
{
    m_reading.setSingleShot(true);
    connect(&m_reading, &QTimer::timeout, this, &Recordset::readSlice);
}

Recordset::~Recordset() = default;

// --- Opening ---

base::Status Recordset::open(const Query &query, KeySet::End end)
{
    KeySet keys(m_connection, m_pace);
    const base::Status opened = keys.open(query, end);
    return opened ? adopt(std::move(keys), query, end) : opened;
}

base::Result<bool> Recordset::openIfAny(const Query &query)
{
    KeySet keys(m_connection, m_pace);
    if (const base::Status opened = keys.open(query, KeySet::End::First); !opened)
        return opened.error();
    if (keys.count() == 0)
        return false;
    const base::Status adopted = adopt(std::move(keys), query, KeySet::End::First);
    return adopted ? base::Result<bool>(true) : base::Result<bool>(adopted.error());
}

base::Status Recordset::adopt(KeySet keys, const Query &query, KeySet::End current)
{
    const auto columns = readColumns(query);
    if (!columns)
        return columns.error();
    beginResetModel();
    m_query = query;
    m_ownOrder = query.order;
    m_key = query.key();
    m_columns = columns->names;
    m_types = columns->types;
    const int row = current == KeySet::End::First ? 0 : keys.count() - 1;
    show(std::move(keys), row);
    return {};
}

// The rows of the query from now on; between beginResetModel() and this.
void Recordset::show(KeySet keys, int current)
{
    m_keys = std::move(keys);
    m_rows.reset(m_query);
    m_edits.clear();
    m_newRow = {};
    m_current = std::min(current, count() - 1);
    endResetModel();
    goOnReading(beforeReadingOn);
    emit currentRowChanged(m_current);
}

base::Result<Recordset::Columns> Recordset::readColumns(const Query &query)
{
    const auto rows =
        m_connection.select(u"SELECT "_s + query.columns + u" FROM "_s + query.table + u" LIMIT 0"_s);
    const auto declared =
        m_connection.select(u"SELECT name, type FROM pragma_table_info(?)"_s, {query.table});
    if (!rows)
        return rows.error();
    if (!declared)
        return declared.error();
    Columns columns{rows->columns, {}};
    for (const QString &column : rows->columns) {
        QString type;
        for (int i = 0; i < declared->count(); ++i) {
            if (declared->value(i, u"name"_s) == column)
                type = declared->value(i, u"type"_s).toString();
        }
        columns.types << typeOf(type);
    }
    return columns;
}

void Recordset::close()
{
    m_reading.stop();
    beginResetModel();
    m_key.clear();
    show(KeySet(m_connection, m_pace), -1);
}

base::Status Recordset::requery()
{
    const qint64 key = currentKey();
    const bool had = m_current >= 0;
    KeySet keys(m_connection, m_pace);
    if (const base::Status opened = keys.open(m_query, KeySet::End::First); !opened)
        return opened;
    if (had && !keys.isComplete() && keys.rowOf(key) < 0) {
        KeySet around(m_connection, m_pace);
        const auto found = around.openAround(m_query, key);
        if (!found)
            return found.error();
        if (*found)
            keys = std::move(around);
    }
    const int row = had ? keys.rowOf(key) : -1;
    beginResetModel();
    show(std::move(keys), std::max(row, 0));
    return {};
}

base::Status Recordset::sortBy(const QString &column, Qt::SortOrder direction)
{
    if (const base::Status settled = settle(); !settled)
        return settled;
    const int place = columnOf(column);
    Query query = m_query;
    query.order = m_ownOrder;
    if (place >= 0) {
        const QString whole = m_query.table + u'.' + column;
        const QString term = m_types.at(place) == QMetaType::QString ? inJapaneseOrder(whole) : whole;
        query.order.prepend(direction == Qt::DescendingOrder ? term + u" DESC"_s : term);
    }
    KeySet keys(m_connection, m_pace);
    if (const base::Status opened = keys.open(query, KeySet::End::First); !opened)
        return opened;
    beginResetModel();
    m_query = query;
    show(std::move(keys), 0);
    return {};
}

// --- Reading on ---

void Recordset::goOnReading(int afterMilliseconds)
{
    if (isComplete())
        m_reading.stop();
    else
        m_reading.start(afterMilliseconds);
}

void Recordset::readSlice()
{
    if (!m_connection.isOpen() || isComplete())
        return;
    const auto end = m_keys.hasEnd(KeySet::End::Last) ? KeySet::End::First : KeySet::End::Last;
    const NoWaiting noWaiting(m_connection);
    if (const auto found = m_keys.next(end); found)
        extend(end, *found);
    else
        goOnReading(std::clamp(2 * m_reading.interval(), firstPause, longestPause));
}

void Recordset::extend(KeySet::End end, const KeySet::Found &found)
{
    const int added = static_cast<int>(found.keys.size());
    const int row = end == KeySet::End::First ? 0 : count();
    if (added > 0)
        beginInsertRows({}, row, row + added - 1);
    m_keys.take(end, found);
    if (end == KeySet::End::First && m_current >= 0)
        m_current += added;
    if (added > 0)
        endInsertRows();
    goOnReading(0);
    emit extended();
}

base::Status Recordset::readEnd(KeySet::End end)
{
    const auto found = m_keys.next(end, true);
    if (!found)
        return found.error();
    extend(end, *found);
    return {};
}

base::Status Recordset::readAll()
{
    for (const KeySet::End end : {KeySet::End::Last, KeySet::End::First}) {
        if (m_keys.hasEnd(end))
            continue;
        if (const base::Status read = readEnd(end); !read)
            return read;
    }
    return {};
}

void Recordset::reach(int row)
{
    const KeySet::End end = row < 0 ? KeySet::End::First : KeySet::End::Last;
    while ((row < 0 || row >= count()) && !m_keys.hasEnd(end)) {
        const auto found = m_keys.next(end);
        if (!found)
            return;
        if (row < 0)
            row += static_cast<int>(found->keys.size());
        extend(end, *found);
    }
}

QString Recordset::placeholders(qsizetype count) { return QStringList(count, u"?"_s).join(u", "_s); }

qint64 Recordset::currentKey() const { return m_current < 0 ? 0 : keyAt(m_current); }

// --- The current row ---

// What keeps the current row from being left.
base::Status Recordset::settle()
{
    if (m_leaving) {
        if (const base::Status left = m_leaving(); !left)
            return left;
    }
    if (!isDirty())
        return {};
    return m_saver ? m_saver() : update();
}

base::Status Recordset::moveTo(int row)
{
    if (row < 0 || row >= count() || row == m_current)
        return {};
    const qint64 target = keyAt(row);
    const qint64 left = currentKey();
    if (const base::Status settled = settle(); !settled)
        return settled;
    // The saver may have read the rows anew, in another order.
    if (currentKey() != left || row >= count() || keyAt(row) != target)
        return moveToKey(target);
    setCurrent(row);
    return {};
}

base::Status Recordset::moveToKey(qint64 key)
{
    if (const int row = m_keys.rowOf(key); row >= 0 || isComplete())
        return moveTo(row);
    KeySet around(m_connection, m_pace);
    const auto found = around.openAround(m_query, key);
    if (!found)
        return found.error();
    if (!*found)
        return {};
    if (const base::Status settled = settle(); !settled)
        return settled;
    const int row = around.rowOf(key);
    beginResetModel();
    show(std::move(around), row);
    return {};
}

base::Status Recordset::moveToEnd(KeySet::End end)
{
    const bool isLast = end == KeySet::End::Last;
    if (m_keys.hasEnd(end))
        return moveTo(isLast ? count() - 1 : 0);
    if (const base::Status settled = settle(); !settled)
        return settled;
    KeySet keys(m_connection, m_pace);
    if (const base::Status opened = keys.open(m_query, end); !opened)
        return opened;
    const int row = isLast ? keys.count() - 1 : 0;
    beginResetModel();
    show(std::move(keys), row);
    return {};
}

void Recordset::setCurrent(int row)
{
    m_edits.clear();
    m_current = row;
    emit currentRowChanged(row);
    dropLeftRow();
}

void Recordset::refresh()
{
    if (m_current < 0)
        return;
    if (!isNewRow())
        m_rows.refresh(currentKey());
    rowChanged(m_current);
    emit currentRowChanged(m_current);
}

void Recordset::rowChanged(int row) { emit dataChanged(index(row, 0), index(row, columnCount() - 1)); }

// --- Cells ---

QVariant Recordset::stored(int row, int column) const
{
    const QVariantList &values = rowAt(row).values;
    return column < values.size() ? values.at(column) : QVariant();
}

const RowCache::Row &Recordset::rowAt(int row) const
{
    const qint64 key = keyAt(row);
    if (key == newRowKey)
        return m_newRow;
    if (!m_rows.has(key)) {
        QVariantList keys;
        const int first = row - row % RowCache::blockSize;
        for (int i = first; i < std::min(first + RowCache::blockSize, count()); ++i)
            keys << keyAt(i);
        m_rows.read(keys, currentKey());
    }
    return m_rows.at(key);
}

int Recordset::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : count(); }

int Recordset::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant Recordset::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= count())
        return {};
    if (role == Qt::TextAlignmentRole)
        return int((m_types.at(index.column()) == QMetaType::QString ? Qt::AlignLeft : Qt::AlignRight) |
                   Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return m_decorator ? m_decorator(index.row(), index.column(), role) : QVariant();
    const auto edit = m_edits.constFind(index.column());
    const bool isEdited = index.row() == m_current && edit != m_edits.constEnd();
    const QVariant value = isEdited ? *edit : stored(index.row(), index.column());
    return role == Qt::EditRole || value.isNull() ? value : QVariant(text::formatValue({}, value));
}

void Recordset::setEditable(const QStringList &columns, CellReader reader)
{
    m_editable = columns;
    m_reader = std::move(reader);
}

Qt::ItemFlags Recordset::flags(const QModelIndex &index) const
{
    const bool editable = index.isValid() && m_editable.contains(m_columns.at(index.column())) &&
                          !isCut(index.row(), index.column());
    return QAbstractTableModel::flags(index) | (editable ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

bool Recordset::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable))
        return false;
    // What the file holds may not be what would be taken today; untouched, it stays.
    if (value.toString() == this->data(index, Qt::EditRole).toString())
        return true;
    const QString column = m_columns.at(index.column());
    if (const base::Status moved = moveTo(index.row()); !moved) {
        emit refused(moved.error().text);
        return false;
    }
    const auto read = m_reader(column, value.toString());
    if (!read) {
        emit refused(read.error().text);
        return false;
    }
    setValue(column, *read);
    return true;
}

QVariant Recordset::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return orientation == Qt::Vertical ? QVariant(section + 1) : QVariant(m_columns.value(section));
}

} // namespace db

#include "db/recordset.h"

#include "text/numbers.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

// About a megabyte of rows; more are read again when they are looked at again.
constexpr int blocksKept = 64;

QMetaType::Type typeOf(const QString &declared)
{
    if (declared == "INTEGER"_L1)
        return QMetaType::LongLong;
    return declared == "REAL"_L1 ? QMetaType::Double : QMetaType::QString;
}

} // namespace

Recordset::Recordset(Connection &connection, QObject *parent)
    : QAbstractTableModel(parent)
    , m_connection(connection)
{}

Recordset::~Recordset() = default;

base::Status Recordset::open(const Query &query)
{
    auto keys = readKeys(query);
    return keys ? adopt(std::move(*keys), query) : base::Status(keys.error());
}

base::Result<bool> Recordset::openIfAny(const Query &query)
{
    auto keys = readKeys(query);
    if (!keys)
        return keys.error();
    if (keys->empty())
        return false;
    const base::Status opened = adopt(std::move(*keys), query);
    return opened ? base::Result<bool>(true) : base::Result<bool>(opened.error());
}

base::Result<std::vector<qint64>> Recordset::readKeys(const Query &query)
{
    return m_connection.integers(query.selecting(query.key()), query.values);
}

base::Status Recordset::adopt(std::vector<qint64> keys, const Query &query)
{
    const auto columns = readColumns(query);
    if (!columns)
        return columns.error();
    beginResetModel();
    m_query = query;
    m_key = query.key();
    m_columns = columns->names;
    m_types = columns->types;
    m_keys = std::move(keys);
    m_blocks.clear();
    m_edits.clear();
    m_current = m_keys.empty() ? -1 : 0;
    endResetModel();
    emit currentRowChanged(m_current);
    return {};
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
    beginResetModel();
    m_key.clear();
    m_keys.clear();
    m_blocks.clear();
    m_edits.clear();
    m_current = -1;
    endResetModel();
    emit currentRowChanged(-1);
}

base::Status Recordset::requery()
{
    const qint64 key = currentKey();
    const bool had = m_current >= 0;
    if (const base::Status opened = open(Query(m_query)); !opened)
        return opened;
    return had ? moveToKey(key) : base::Status();
}

QString Recordset::placeholders(qsizetype count) { return QStringList(count, u"?"_s).join(u", "_s); }

qint64 Recordset::currentKey() const { return m_current < 0 ? 0 : keyAt(m_current); }

base::Status Recordset::moveTo(int row)
{
    if (row < 0 || row >= count() || row == m_current)
        return {};
    if (m_leaving) {
        if (const base::Status left = m_leaving(); !left)
            return left;
    }
    if (isDirty()) {
        const qint64 target = keyAt(row);
        const qint64 left = currentKey();
        const base::Status saved = m_saver ? m_saver() : update();
        if (!saved)
            return saved;
        // The saver may have read the rows anew, in another order.
        if (currentKey() != left || row >= count() || keyAt(row) != target)
            return moveToKey(target);
    }
    setCurrent(row);
    return {};
}

base::Status Recordset::moveToKey(qint64 key)
{
    const auto found = std::find(m_keys.begin(), m_keys.end(), key);
    return found == m_keys.end() ? base::Status() : moveTo(static_cast<int>(found - m_keys.begin()));
}

void Recordset::setCurrent(int row)
{
    m_edits.clear();
    m_current = row;
    emit currentRowChanged(row);
}

void Recordset::refresh()
{
    if (m_current < 0)
        return;
    const int number = m_current / blockSize;
    const Block known = m_blocks.take(number);
    if (!block(number).isRead && known.isRead)
        m_blocks.insert(number, known);
    rowChanged(m_current);
    emit currentRowChanged(m_current);
}

void Recordset::rowChanged(int row) { emit dataChanged(index(row, 0), index(row, columnCount() - 1)); }

QVariant Recordset::stored(int row, int column) const
{
    const Block &kept = block(row / blockSize);
    const QVariantList &values = kept.rows[static_cast<std::size_t>(row % blockSize)];
    return column < values.size() ? values.at(column) : QVariant();
}

// A row that another program deleted meanwhile, or that cannot be read, stays as an empty row.
const Recordset::Block &Recordset::block(int number) const
{
    if (const auto kept = m_blocks.constFind(number); kept != m_blocks.constEnd())
        return *kept;
    if (m_blocks.size() >= blocksKept)
        m_blocks.clear();
    const int first = number * blockSize;
    const int size = std::min(blockSize, count() - first);
    QVariantList keys;
    QHash<qint64, int> places;
    for (int i = 0; i < size; ++i) {
        keys << keyAt(first + i);
        places.insert(keyAt(first + i), i);
    }
    Block fresh{std::vector<QVariantList>(static_cast<std::size_t>(size))};
    const auto read =
        m_connection.select(u"SELECT "_s + m_key + u", "_s + m_query.columns + u" FROM "_s + m_query.table +
                                u" WHERE "_s + m_key + u" IN ("_s + placeholders(size) + u")"_s,
                            keys);
    if (read) {
        fresh.isRead = true;
        for (const QVariantList &row : read->rows)
            fresh.rows[static_cast<std::size_t>(places.value(row.front().toLongLong()))] = row.mid(1);
    }
    return *m_blocks.insert(number, std::move(fresh));
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
        return int((isText(index.column()) ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return m_decorator ? m_decorator(index.row(), index.column(), role) : QVariant();
    const auto edit = m_edits.constFind(index.column());
    const bool isEdited = index.row() == m_current && edit != m_edits.constEnd();
    const QVariant value = isEdited ? *edit : stored(index.row(), index.column());
    return role == Qt::EditRole ? value : QVariant(shown(index.column(), value));
}

bool Recordset::isText(int column) const
{
    return m_types.at(column) == QMetaType::QString || m_names.contains(m_columns.at(column));
}

void Recordset::setNames(const QString &column, const QHash<qint64, QString> &names)
{
    setNames(column, [names](qint64 number) { return names.value(number); });
}

void Recordset::setNames(const QString &column, const std::function<QString(qint64)> &nameOf)
{
    m_names.insert(column, nameOf);
    if (!isEmpty() && columnOf(column) >= 0)
        emit dataChanged(index(0, columnOf(column)), index(count() - 1, columnOf(column)));
}

QString Recordset::shown(int column, const QVariant &value) const
{
    if (value.isNull())
        return {};
    if (const auto names = m_names.constFind(m_columns.at(column)); names != m_names.constEnd()) {
        if (const QString name = (*names)(value.toLongLong()); !name.isEmpty())
            return name;
    }
    // A text in a column of numbers is shown as it stands, not as 0.
    const bool isText = value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray;
    switch (m_formats.value(m_columns.at(column), Format::Plain)) {
    case Format::Amount:
        return isText ? value.toString() : text::formatAmount(value.toDouble());
    case Format::Quantity:
        return isText ? value.toString() : text::formatQuantity(value.toDouble());
    case Format::Date:
        return value.toString().replace(u'-', u'/');
    case Format::Plain:
        break;
    }
    return value.typeId() == QMetaType::Double ? text::formatPlain(value.toDouble()) : value.toString();
}

void Recordset::setEditable(const QStringList &columns, CellReader reader)
{
    m_editable = columns;
    m_reader = std::move(reader);
}

Qt::ItemFlags Recordset::flags(const QModelIndex &index) const
{
    const bool editable = index.isValid() && m_editable.contains(m_columns.at(index.column()));
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
    if (orientation == Qt::Vertical)
        return section + 1;
    const QString column = m_columns.value(section);
    return m_captions.value(column, column);
}

} // namespace db

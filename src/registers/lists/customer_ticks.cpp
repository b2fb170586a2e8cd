#include "registers/lists/customer_ticks.h"

#include "registers/lists/customer_deletion.h"
#include "text/dates.h"

#include <QSet>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

struct Column
{
    const char16_t *caption;
    const char16_t *field; // of 納品先; empty: not from the table
    int width;             // half-width characters
    bool isDay = false;
};

enum { TickColumn = 0, SlipColumn = 1 };

constexpr std::array<Column, 10> columns{{
    {u"対象", u"", 5},
    {u"伝票", u"", 7},
    {u"ID", u"納品先ID", 7},
    {u"コード", u"コード", 10},
    {u"納品先名１", u"納品先名1", 28},
    {u"納品先名２", u"納品先名2", 18},
    {u"フリガナ", u"フリガナ", 20},
    {u"ＴＥＬ１", u"TEL1", 14},
    {u"住所１", u"住所1", 31},
    {u"更新日", u"更新日", 11, true},
}};

const Column &columnAt(int column) { return columns[static_cast<std::size_t>(column)]; }

} // namespace

CustomerTicks::CustomerTicks(db::Connection &connection, Guard guard)
    : m_connection(connection)
    , m_guard(guard)
    , m_customers(connection)
{}

base::Status CustomerTicks::find(const CustomerQuery &query)
{
    QHash<qint64, int> slips;
    if (m_guard == Guard::Slips) {
        auto counted = slipsOfCustomers(m_connection);
        if (!counted)
            return counted.error();
        slips = std::move(*counted);
    }
    // The list is replaced only once the search has gone well, which is known when it has been done.
    beginResetModel();
    base::Status opened = openCustomersFound(m_customers, query);
    if (opened)
        opened = m_customers.readAll();
    if (opened) {
        m_slips = std::move(slips);
        m_ticked.assign(static_cast<std::size_t>(count()), false);
        for (int row = 0; row < count(); ++row)
            m_ticked[static_cast<std::size_t>(row)] = slipsAt(row) == 0;
    }
    endResetModel();
    emit choiceChanged();
    return opened;
}

bool CustomerTicks::isSortable(int column) const
{
    return column >= 0 && column < columnCount() && *columnAt(column).field != u'\0';
}

base::Status CustomerTicks::sortBy(int column, Qt::SortOrder direction)
{
    const std::vector<qint64> keys = ticked();
    const QSet<qint64> chosen(keys.begin(), keys.end());
    beginResetModel();
    base::Status sorted =
        m_customers.sortBy(column < 0 ? QString() : QString::fromUtf16(columnAt(column).field), direction);
    if (sorted)
        sorted = m_customers.readAll();
    m_ticked.assign(static_cast<std::size_t>(count()), false);
    for (int row = 0; row < count(); ++row)
        m_ticked[static_cast<std::size_t>(row)] = chosen.contains(m_customers.keyAt(row));
    endResetModel();
    emit choiceChanged();
    return sorted;
}

void CustomerTicks::setSlipsAllowed(bool allowed)
{
    m_slipsAllowed = allowed;
    for (int row = 0; row < count(); ++row) {
        if (!mayTick(row))
            m_ticked[static_cast<std::size_t>(row)] = false;
    }
    ticksChanged();
}

void CustomerTicks::tickAll(bool ticked)
{
    for (int row = 0; row < count(); ++row)
        m_ticked[static_cast<std::size_t>(row)] = ticked && mayTick(row);
    ticksChanged();
}

void CustomerTicks::toggle(int row)
{
    if (row < 0 || row >= count() || !mayTick(row))
        return;
    const auto place = static_cast<std::size_t>(row);
    m_ticked[place] = !m_ticked[place];
    emit dataChanged(index(row, TickColumn), index(row, TickColumn));
    emit choiceChanged();
}

bool CustomerTicks::mayTick(int row) const { return m_slipsAllowed || slipsAt(row) == 0; }

void CustomerTicks::ticksChanged()
{
    if (count() > 0)
        emit dataChanged(index(0, 0), index(count() - 1, columnCount() - 1));
    emit choiceChanged();
}

template <class Condition>
int CustomerTicks::countRows(Condition condition) const
{
    int found = 0;
    for (int row = 0; row < count(); ++row)
        found += condition(row) ? 1 : 0;
    return found;
}

int CustomerTicks::tickedCount() const
{
    return static_cast<int>(std::count(m_ticked.cbegin(), m_ticked.cend(), true));
}

int CustomerTicks::withSlips() const
{
    return countRows([this](int row) { return slipsAt(row) > 0; });
}

int CustomerTicks::tickedWithSlips() const
{
    return countRows([this](int row) { return m_ticked[static_cast<std::size_t>(row)] && slipsAt(row) > 0; });
}

std::vector<qint64> CustomerTicks::ticked() const
{
    std::vector<qint64> keys;
    for (int row = 0; row < count(); ++row) {
        if (m_ticked[static_cast<std::size_t>(row)])
            keys.push_back(m_customers.keyAt(row));
    }
    return keys;
}

// --- As a table ---

int CustomerTicks::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : count(); }

int CustomerTicks::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(columns.size());
}

QVariant CustomerTicks::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= count())
        return {};
    const int row = index.row();
    switch (index.column()) {
    case TickColumn:
        if (role == Qt::CheckStateRole)
            return int(m_ticked[static_cast<std::size_t>(row)] ? Qt::Checked : Qt::Unchecked);
        return {};
    case SlipColumn:
        if (role == Qt::DisplayRole && slipsAt(row) > 0)
            return QString::number(slipsAt(row)) + u" 件"_s;
        if (role == Qt::TextAlignmentRole)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    default: {
        const Column &column = columnAt(index.column());
        const int place = m_customers.columnOf(QString::fromUtf16(column.field));
        const QVariant value = m_customers.data(m_customers.index(row, place), role);
        return column.isDay && role == Qt::DisplayRole ? text::shownDay(value.toString()) : value;
    }
    }
}

bool CustomerTicks::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || index.column() != TickColumn || !mayTick(index.row()))
        return false;
    const bool wanted = value.toInt() == Qt::Checked;
    if (m_ticked[static_cast<std::size_t>(index.row())] != wanted)
        toggle(index.row());
    return true;
}

// A customer that cannot be ticked shows grey.
Qt::ItemFlags CustomerTicks::flags(const QModelIndex &index) const
{
    if (!index.isValid() || !mayTick(index.row()))
        return Qt::NoItemFlags;
    const Qt::ItemFlags row = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return index.column() == TickColumn ? row | Qt::ItemIsUserCheckable : row;
}

QVariant CustomerTicks::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return QString::fromUtf16(columnAt(section).caption);
}

int CustomerTicks::width(int column) const
{
    return column == SlipColumn && m_guard == Guard::None ? 0 : columnAt(column).width;
}

} // namespace registers

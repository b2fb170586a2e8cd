#include "shipping/gifts/gift_order_model.h"

#include "shipping/gifts/gift_paste.h"

#include <QBrush>
#include <QColor>
#include <QSet>

namespace shipping
{

namespace
{

constexpr std::size_t mostTakenBack = 30;

GiftColumn columnAt(int column) { return static_cast<GiftColumn>(column); }

} // namespace

GiftOrderModel::GiftOrderModel(QObject *parent)
    : QAbstractTableModel(parent)
{}

void GiftOrderModel::setOrder(GiftOrder order)
{
    beginResetModel();
    m_order = std::move(order);
    m_before.clear();
    endResetModel();
    emit changed();
}

void GiftOrderModel::setHead(const GiftOrder &head)
{
    std::vector<GiftRow> rows = std::move(m_order.rows);
    m_order = head;
    m_order.rows = std::move(rows);
    shown();
}

void GiftOrderModel::remember()
{
    if (m_before.size() == mostTakenBack)
        m_before.erase(m_before.begin());
    m_before.push_back(m_order.rows);
}

void GiftOrderModel::replaceRows(std::vector<GiftRow> rows)
{
    beginResetModel();
    m_order.rows = std::move(rows);
    endResetModel();
    emit changed();
}

void GiftOrderModel::shown()
{
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    emit changed();
}

int GiftOrderModel::append(const std::vector<GiftRow> &rows)
{
    const int first = int(m_order.rows.size());
    if (rows.empty())
        return first;
    remember();
    // The empty line, in which a cell may be open, becomes the first of them.
    beginInsertRows({}, first + 1, first + int(rows.size()));
    m_order.rows.insert(m_order.rows.end(), rows.begin(), rows.end());
    endInsertRows();
    shown();
    return first;
}

void GiftOrderModel::remove(const std::vector<int> &places)
{
    const QSet<int> gone(places.begin(), places.end());
    std::vector<GiftRow> left;
    for (int row = 0; isLine(row); ++row) {
        const GiftRow &line = m_order.rows[std::size_t(row)];
        if (line.issued || !gone.contains(row))
            left.push_back(line);
    }
    if (left.size() == m_order.rows.size())
        return;
    remember();
    replaceRows(std::move(left));
}

void GiftOrderModel::tickAll(bool ticked)
{
    for (GiftRow &row : m_order.rows)
        row.ticked = ticked && !row.issued;
    shown();
}

void GiftOrderModel::toggle(int row)
{
    if (!isLine(row))
        return;
    GiftRow &line = m_order.rows[std::size_t(row)];
    line.ticked = !line.ticked;
    shown();
}

void GiftOrderModel::followCommon()
{
    remember();
    for (GiftRow &row : m_order.rows) {
        for (std::size_t i = 0; i < giftTermCount; ++i) {
            const auto term = static_cast<GiftTerm>(i);
            if (row.ticked && !row.issued && !termOf(m_order.common, term).isNull())
                row.dropOwn(term);
        }
    }
    shown();
}

base::Status GiftOrderModel::paste(int row, int column, const QString &text)
{
    const auto cells = pastedCells(text, columnAt(column));
    if (!cells)
        return cells.error();
    auto rows = pastedInto(m_order, row, *cells);
    if (!rows)
        return rows.error();
    if (*rows == m_order.rows)
        return {};
    remember();
    replaceRows(std::move(*rows));
    return {};
}

void GiftOrderModel::takeBack()
{
    if (m_before.empty())
        return;
    std::vector<GiftRow> rows = std::move(m_before.back());
    m_before.pop_back();
    replaceRows(std::move(rows));
}

// A line that came back unissued would be printed once more.
void GiftOrderModel::setIssued(const std::vector<std::size_t> &rows, const QString &state)
{
    if (rows.empty())
        return;
    m_before.clear();
    for (const std::size_t row : rows) {
        m_order.rows[row].issued = true;
        m_order.rows[row].ticked = false;
        m_order.rows[row].state = state;
    }
    shown();
}

void GiftOrderModel::setState(std::size_t row, const QString &state)
{
    m_order.rows[row].state = state;
    shown();
}

void GiftOrderModel::clearStates()
{
    for (GiftRow &row : m_order.rows) {
        if (!row.issued)
            row.state.clear();
    }
    shown();
}

// --- As a table ---

int GiftOrderModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_order.rows.size()) + 1;
}

int GiftOrderModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : giftColumnCount;
}

QVariant GiftOrderModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const GiftColumn column = columnAt(index.column());
    if (role == Qt::TextAlignmentRole && base::isNumber(lookOf(column).format))
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (!isLine(index.row()))
        return role == Qt::EditRole ? QVariant(QString()) : QVariant();
    const GiftRow &row = m_order.rows[std::size_t(index.row())];
    switch (role) {
    case Qt::CheckStateRole:
        return column == GiftColumn::Tick ? QVariant(int(row.ticked ? Qt::Checked : Qt::Unchecked))
                                          : QVariant();
    case Qt::DisplayRole:
        return shownCell(m_order, row, column);
    case Qt::EditRole:
        return typedCell(row, column);
    case Qt::ToolTipRole:
        return column == GiftColumn::State ? QVariant(row.state) : QVariant();
    case Qt::ForegroundRole: {
        const auto term = termIn(column);
        const bool isCommon = term && !row.has(*term);
        return isCommon || row.issued ? QVariant(QBrush(QColor(Qt::gray))) : QVariant();
    }
    default:
        return {};
    }
}

bool GiftOrderModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.row() >= rowCount())
        return false;
    const GiftColumn column = columnAt(index.column());
    if (role == Qt::CheckStateRole && column == GiftColumn::Tick && isLine(index.row())) {
        if (m_order.rows[std::size_t(index.row())].ticked != (value.toInt() == Qt::Checked))
            toggle(index.row());
        return true;
    }
    if (role != Qt::EditRole)
        return false;
    GiftRow row = isLine(index.row()) ? m_order.rows[std::size_t(index.row())] : GiftRow();
    const GiftRow before = row;
    const base::Status taken = enterCell(row, column, value.toString(), m_order.accepted);
    if (!taken) {
        emit refused(taken.error().text);
        return false;
    }
    if (row == before)
        return true;
    row.state.clear();
    if (isLine(index.row())) {
        remember();
        m_order.rows[std::size_t(index.row())] = std::move(row);
        shown();
    } else {
        append({row});
    }
    emit entered(index.row(), column);
    return true;
}

Qt::ItemFlags GiftOrderModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags cell = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const GiftColumn column = columnAt(index.column());
    if (column == GiftColumn::Tick)
        return isLine(index.row()) ? cell | Qt::ItemIsUserCheckable : cell;
    const bool isOut = isLine(index.row()) && m_order.rows[std::size_t(index.row())].issued;
    return column == GiftColumn::State || isOut ? cell : cell | Qt::ItemIsEditable;
}

QVariant GiftOrderModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole &&
        base::isNumber(lookOf(columnAt(section)).format))
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return lookOf(columnAt(section)).heading;
}

} // namespace shipping

#include "ui/slip_grid_model.h"

#include "ui/column_cells.h"

namespace ui
{

SlipGridModel::SlipGridModel(std::vector<base::Column> columns, QObject *parent)
    : QAbstractTableModel(parent)
    , m_columns(std::move(columns))
{}

void SlipGridModel::setRows(std::vector<QVariantList> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void SlipGridModel::append(const QVariantList &row)
{
    beginInsertRows({}, rowCount(), rowCount());
    m_rows.push_back(row);
    endInsertRows();
}

void SlipGridModel::removeLast()
{
    if (m_rows.empty())
        return;
    beginRemoveRows({}, rowCount() - 1, rowCount() - 1);
    m_rows.pop_back();
    endRemoveRows();
}

int SlipGridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int SlipGridModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant SlipGridModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const QVariantList &row = m_rows[static_cast<std::size_t>(index.row())];
    return cellOf(m_columns[static_cast<std::size_t>(index.column())], row.value(index.column()), role);
}

QVariant SlipGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical || section < 0 || section >= columnCount())
        return QAbstractTableModel::headerData(section, orientation, role);
    return headingOf(m_columns[static_cast<std::size_t>(section)], role);
}

} // namespace ui

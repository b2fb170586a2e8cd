#include "ui/report_model.h"

#include "ui/column_cells.h"

#include <QFont>

namespace ui
{

void ReportModel::setReport(base::Report report)
{
    beginResetModel();
    m_report = std::move(report);
    endResetModel();
}

int ReportModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_report.rows.size());
}

int ReportModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_report.columns.size());
}

QVariant ReportModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const base::ReportRow &row = m_report.rows[static_cast<std::size_t>(index.row())];
    if (role == Qt::FontRole && row.kind != base::RowKind::Plain) {
        QFont bold;
        bold.setBold(true);
        return bold; // resolved with the grid's own
    }
    return cellOf(m_report.columns[static_cast<std::size_t>(index.column())],
                  row.values.value(index.column()), role);
}

QVariant ReportModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical || section < 0 || section >= columnCount())
        return QAbstractTableModel::headerData(section, orientation, role);
    return headingOf(m_report.columns[static_cast<std::size_t>(section)], role);
}

} // namespace ui

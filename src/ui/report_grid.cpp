#include "ui/report_grid.h"

#include "ui/report_order.h"

#include <QHeaderView>
#include <QStyle>

#include <algorithm>

namespace ui
{

ReportGrid::ReportGrid(QWidget *parent)
    : Grid(parent)
{
    setModel(&m_rows);
}

void ReportGrid::showColumns(std::vector<base::Column> columns)
{
    m_rows.setReport({.columns = std::move(columns)});
    const int character = fontMetrics().horizontalAdvance(u'0');
    for (int i = 0; i < m_rows.columnCount(); ++i) {
        const base::Column &column = report().columns[static_cast<std::size_t>(i)];
        setColumnWidth(i, (column.characters + 1) * character);
        if (column.stretches)
            horizontalHeader()->setSectionResizeMode(i, QHeaderView::Stretch);
    }
}

int ReportGrid::fullWidth() const
{
    const int character = fontMetrics().horizontalAdvance(u'0');
    int width = 2 * frameWidth() + style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    for (const base::Column &column : report().columns)
        width += (column.characters + 1) * character;
    return width;
}

void ReportGrid::setReport(base::Report report)
{
    m_asGiven.clear();
    if (m_sortedColumn >= 0 && canBeSorted(report)) {
        m_asGiven = report.rows;
        sortRows(report, m_sortedColumn, m_sortedTowards);
    }
    showRows(std::move(report));
}

void ReportGrid::showRows(base::Report report)
{
    const QVariant link = currentLink();
    const int before = currentIndex().row();
    m_rows.setReport(std::move(report));
    setCurrentIndex(m_rows.index(rowOf(link, before), 0));
}

void ReportGrid::clear()
{
    base::Report empty;
    empty.columns = report().columns;
    setReport(std::move(empty));
}

// --- Sorting ---

void ReportGrid::letSortRows()
{
    letSort();
    connect(this, &Grid::sortWanted, this, &ReportGrid::sortRowsBy);
}

void ReportGrid::sortRowsBy(int column)
{
    base::Report report = m_rows.report();
    if (!canBeSorted(report))
        return;
    if (m_sortedColumn >= 0)
        report.rows = std::move(m_asGiven);
    const bool again = column == m_sortedColumn;
    const bool isLast = again && m_sortedTowards == Qt::DescendingOrder;
    m_sortedTowards = again ? Qt::DescendingOrder : Qt::AscendingOrder;
    m_sortedColumn = isLast ? -1 : column;
    showSortedColumn();
    setReport(std::move(report));
}

void ReportGrid::showSortedColumn()
{
    horizontalHeader()->setSortIndicatorShown(m_sortedColumn >= 0);
    if (m_sortedColumn >= 0)
        horizontalHeader()->setSortIndicator(m_sortedColumn, m_sortedTowards);
}

QVariant ReportGrid::currentLink() const
{
    const int row = currentIndex().row();
    return row >= 0 && row < rowCount() ? report().rows[static_cast<std::size_t>(row)].link : QVariant();
}

int ReportGrid::rowOf(const QVariant &link, int before) const
{
    const std::vector<base::ReportRow> &rows = report().rows;
    const int row = std::clamp(before, 0, std::max(rowCount() - 1, 0));
    if (rows.empty() || !link.isValid() || rows[static_cast<std::size_t>(row)].link == link)
        return row;
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [&](const base::ReportRow &candidate) { return candidate.link == link; });
    return found == rows.end() ? row : static_cast<int>(found - rows.begin());
}

} // namespace ui

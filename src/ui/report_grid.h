#pragma once

#include "ui/grid.h"
#include "ui/report_model.h"

namespace ui
{

/// The grid of every report. Nothing is copied: what it is given is what it shows, prints and exports.
class ReportGrid : public Grid
{
    Q_OBJECT

public:
    explicit ReportGrid(QWidget *parent = nullptr);

    /// Sets columns up without rows: their widths, and which one takes what is left.
    void showColumns(std::vector<base::Column> columns);
    /// Width of the grid at which no column is cut off, pixels.
    [[nodiscard]] int fullWidth() const;

    /// Shows \a report, whose columns are those that showColumns() had, and may be more behind them. The
    /// current row stays at what it leads to, wherever that is now; where it is gone, or leads nowhere, the
    /// same place stays.
    void setReport(base::Report report);
    void clear();

    /// From now on a click on a heading, or the context menu, sorts the rows by its column: up, down, and as
    /// they were given. What report() prints and exports is sorted too. For reports whose order says nothing.
    void letSortRows();

    [[nodiscard]] const base::Report &report() const { return m_rows.report(); }
    [[nodiscard]] int rowCount() const { return m_rows.rowCount(); }
    /// What the current row leads to; null: nowhere, or there is none.
    [[nodiscard]] QVariant currentLink() const;

private:
    [[nodiscard]] int rowOf(const QVariant &link, int before) const;
    void showRows(base::Report report);
    void sortRowsBy(int column);
    void showSortedColumn();

    ReportModel m_rows;
    int m_sortedColumn = -1; // none
    Qt::SortOrder m_sortedTowards = Qt::AscendingOrder;
    std::vector<base::ReportRow> m_asGiven; // while they are sorted
};

} // namespace ui

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

    /// Shows \a report, whose columns are as many as showColumns() had. The current row stays at what it
    /// leads to, wherever that is now; where it is gone, or leads nowhere, the same place stays.
    void setReport(base::Report report);
    void clear();

    [[nodiscard]] const base::Report &report() const { return m_rows.report(); }
    [[nodiscard]] int rowCount() const { return m_rows.rowCount(); }
    /// What the current row leads to; null: nowhere, or there is none.
    [[nodiscard]] QVariant currentLink() const;

private:
    [[nodiscard]] int rowOf(const QVariant &link, int before) const;

    ReportModel m_rows;
};

} // namespace ui

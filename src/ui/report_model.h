#pragma once

#include "base/report.h"

#include <QAbstractTableModel>

namespace ui
{

/// The rows of a report, without its totals.
class ReportModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    void setReport(base::Report report);
    [[nodiscard]] const base::Report &report() const { return m_report; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    base::Report m_report;
};

} // namespace ui

#pragma once

#include "base/column.h"

#include <QAbstractTableModel>

#include <vector>

namespace ui
{

/// Rows that are only shown, under headings of their own: the lines of a slip, those of earlier slips.
class SlipGridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    SlipGridModel(std::vector<base::Column> columns, QObject *parent);

    /// Replaces all rows.
    void setRows(std::vector<QVariantList> rows);
    void append(const QVariantList &row);
    void removeLast();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<base::Column> m_columns;
    std::vector<QVariantList> m_rows;
};

} // namespace ui

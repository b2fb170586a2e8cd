#pragma once

#include "db/recordset.h"

#include <QAbstractTableModel>

namespace ui
{

/// Rows that are only shown, under headings of their own: the lines of a slip, those of earlier slips.
class SlipGridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    struct Column
    {
        QString caption;
        db::Format format = db::Format::Plain;
        bool isNumber = false; // aligned right
    };

    SlipGridModel(std::vector<Column> columns, QObject *parent);

    /// Replaces all rows.
    void setRows(std::vector<QVariantList> rows);
    void append(const QVariantList &row);
    void removeLast();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<Column> m_columns;
    std::vector<QVariantList> m_rows;
};

} // namespace ui

#pragma once

#include "base/column.h"

#include <QHash>
#include <QIdentityProxyModel>

#include <functional>

namespace db
{
class Recordset;
}

namespace ui
{

/// The name that is shown in place of a number; empty: the number shows.
using NameOf = std::function<QString(qint64)>;

/// Names that are read beforehand.
NameOf namesFrom(const QHash<qint64, QString> &names);

/// A column of a record set that a grid shows.
struct GridColumn
{
    QString column;
    int characters;       // width until the user sets another one, in half-width characters
    QString heading = {}; // empty: the column's own name
    base::Format format = base::Format::Text;
    NameOf nameOf = {}; // for numbers that stand for something
};

/// The rows of a record set as a grid shows them: each column under its heading, in its format.
class GridRows : public QIdentityProxyModel
{
    Q_OBJECT

public:
    /// Goes with \a recordset, as its views may outlive that.
    explicit GridRows(db::Recordset &recordset);

    /// Columns that are not named here look as they are stored.
    void setColumns(const QList<GridColumn> &columns);
    void setNames(const QString &column, const NameOf &nameOf);

    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] const GridColumn *lookOf(int column) const;

    db::Recordset &m_recordset;
    QHash<QString, GridColumn> m_columns;
};

} // namespace ui

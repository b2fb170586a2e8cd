#include "ui/grid_rows.h"

#include "db/recordset.h"
#include "text/format_value.h"

namespace ui
{

NameOf namesFrom(const QHash<qint64, QString> &names)
{
    return [names](qint64 number) { return names.value(number); };
}

GridRows::GridRows(db::Recordset &recordset)
    : QIdentityProxyModel(&recordset)
    , m_recordset(recordset)
{
    setSourceModel(&recordset);
}

void GridRows::setColumns(const QList<GridColumn> &columns)
{
    m_columns.clear();
    for (const GridColumn &column : columns)
        m_columns.insert(column.column, column);
}

void GridRows::setNames(const QString &column, const NameOf &nameOf)
{
    m_columns[column].nameOf = nameOf;
    const int at = m_recordset.columnOf(column);
    if (at >= 0 && rowCount() > 0)
        emit dataChanged(index(0, at), index(rowCount() - 1, at));
}

const GridColumn *GridRows::lookOf(int column) const
{
    const auto found = m_columns.constFind(m_recordset.columns().value(column));
    return found == m_columns.constEnd() ? nullptr : &*found;
}

QVariant GridRows::data(const QModelIndex &index, int role) const
{
    const GridColumn *look = lookOf(index.column());
    if (!look || (role != Qt::DisplayRole && role != Qt::TextAlignmentRole))
        return QIdentityProxyModel::data(index, role);
    if (role == Qt::TextAlignmentRole)
        return look->nameOf ? QVariant(int(Qt::AlignLeft | Qt::AlignVCenter))
                            : QIdentityProxyModel::data(index, role);
    const QVariant value = QIdentityProxyModel::data(index, Qt::EditRole);
    if (value.isNull())
        return QString();
    const QString name = look->nameOf ? look->nameOf(value.toLongLong()) : QString();
    return name.isEmpty() ? text::formatValue(look->format, value) : name;
}

QVariant GridRows::headerData(int section, Qt::Orientation orientation, int role) const
{
    const GridColumn *look = lookOf(section);
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && look && !look->heading.isEmpty())
        return look->heading;
    return QIdentityProxyModel::headerData(section, orientation, role);
}

} // namespace ui

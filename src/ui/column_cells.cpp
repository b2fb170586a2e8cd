#include "ui/column_cells.h"

#include "text/format_value.h"

namespace ui
{

namespace
{

int alignmentOf(const base::Column &column)
{
    return int((base::isNumber(column.format) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

} // namespace

QVariant cellOf(const base::Column &column, const QVariant &value, int role)
{
    switch (role) {
    case Qt::DisplayRole:
        return text::formatValue(column.format, value);
    case Qt::EditRole:
        return value;
    case Qt::TextAlignmentRole:
        return alignmentOf(column);
    default:
        return {};
    }
}

QVariant headingOf(const base::Column &column, int role)
{
    if (role == Qt::TextAlignmentRole)
        return alignmentOf(column);
    return role == Qt::DisplayRole ? QVariant(column.heading) : QVariant();
}

} // namespace ui

#include "ui/column_cells.h"

#include "text/format_value.h"

namespace ui
{

namespace
{

// Characters: a grid that lays out megabytes stands still.
constexpr qsizetype longestShown = 2000;

int alignmentOf(const base::Column &column)
{
    return int((base::isNumber(column.format) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

} // namespace

QVariant cellOf(const base::Column &column, const QVariant &value, int role)
{
    switch (role) {
    case Qt::DisplayRole:
        return text::formatValue(column.format, value).left(longestShown);
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

#include "ui/report_order.h"

#include "text/japanese_order.h"

#include <algorithm>
#include <cmath>

namespace ui
{

namespace
{

// A sum that cannot be counted is none, and in no order with the others.
bool saysNothing(const QVariant &value, base::Format format)
{
    return value.isNull() || (base::isNumber(format) && std::isnan(value.toDouble()));
}

bool standsBefore(const QVariant &one, const QVariant &other, base::Format format)
{
    if (saysNothing(one, format) || saysNothing(other, format))
        return saysNothing(one, format) && !saysNothing(other, format);
    return base::isNumber(format) ? one.toDouble() < other.toDouble()
                                  : text::comesBefore(one.toString(), other.toString());
}

} // namespace

bool canBeSorted(const base::Report &report)
{
    return std::ranges::all_of(report.rows,
                               [](const base::ReportRow &row) { return row.kind == base::RowKind::Plain; });
}

void sortRows(base::Report &report, int column, Qt::SortOrder direction)
{
    const base::Format format = report.columns[static_cast<std::size_t>(column)].format;
    std::ranges::stable_sort(report.rows, [&](const base::ReportRow &one, const base::ReportRow &other) {
        const QVariant left = one.values.value(column);
        const QVariant right = other.values.value(column);
        return direction == Qt::AscendingOrder ? standsBefore(left, right, format)
                                               : standsBefore(right, left, format);
    });
}

} // namespace ui

#include "base/report.h"

#include "base/exact_sum.h"

#include <algorithm>
#include <functional>

namespace base
{

namespace
{

// The column that has room for a name.
std::size_t nameColumn(const std::vector<Column> &columns)
{
    const auto found = std::find_if(columns.begin(), columns.end(), std::mem_fn(&Column::stretches));
    return found == columns.end() ? 0 : static_cast<std::size_t>(found - columns.begin());
}

QVariantList namedRow(const Report &report, const QString &name)
{
    QVariantList values(static_cast<qsizetype>(report.columns.size()));
    if (!values.isEmpty())
        values[static_cast<qsizetype>(nameColumn(report.columns))] = name;
    return values;
}

QVariantList sumsFrom(const Report &report, std::size_t first, const QString &name)
{
    QVariantList values = namedRow(report, name);
    for (std::size_t column = 0; column < report.columns.size(); ++column) {
        if (report.columns[column].summed)
            values[static_cast<qsizetype>(column)] = columnSum(report, column, first);
    }
    return values;
}

// A text counts as no number, even where it reads as one: the figure shown beside it would be another.
double summand(const QVariant &value)
{
    const int type = value.typeId();
    const bool isNumber = type == QMetaType::Double || type == QMetaType::LongLong || type == QMetaType::Int;
    return isNumber ? value.toDouble() : std::numeric_limits<double>::quiet_NaN();
}

} // namespace

void beginGroup(Report &report, const QString &name)
{
    report.rows.push_back({namedRow(report, name), {}, RowKind::Heading});
}

void endGroup(Report &report, const QString &name)
{
    const auto last = std::find_if(report.rows.rbegin(), report.rows.rend(),
                                   [](const ReportRow &row) { return row.kind != RowKind::Plain; });
    const auto first = static_cast<std::size_t>(report.rows.rend() - last);
    report.rows.push_back({sumsFrom(report, first, name), {}, RowKind::Subtotal});
}

void addTotals(Report &report, const QString &name) { report.totals = sumsFrom(report, 0, name); }

double columnSum(const Report &report, std::size_t column, std::size_t first)
{
    ExactSum sum;
    for (std::size_t row = first; row < report.rows.size(); ++row) {
        const ReportRow &summed = report.rows[row];
        const QVariant &value = summed.values.at(static_cast<qsizetype>(column));
        if (summed.kind == RowKind::Plain && !value.isNull())
            sum.add(summand(value));
    }
    return sum.value();
}

} // namespace base

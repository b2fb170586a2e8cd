#pragma once

#include "base/column.h"

#include <QVariant>

#include <vector>

// What lists, ledgers and daily reports have in common. A screen shows it, a printer prints it, a spreadsheet
// gets it.
namespace base
{

enum class RowKind : quint8 {
    Plain,
    Heading,  // begins a group
    Subtotal, // ends it
};

struct ReportRow
{
    QVariantList
        values; // one a column, as they are stored: dates yyyy-MM-dd; cells of paper may hold line breaks
    QVariant link{}; // what the row leads to, in the terms of who made the report; null: nowhere
    RowKind kind = RowKind::Plain;
};

/// A figure that a screen shows below the rows.
struct NamedSum
{
    QString name;
    double value = 0;
    Format format = Format::Amount;
};

struct Report
{
    QString title{};
    QString remark{};       // over the rows: whose it is, and of which days
    QString documentName{}; // what a file or a print job of it is called
    std::vector<Column> columns{};
    std::vector<ReportRow> rows{};
    QVariantList totals{}; // a row under all others, on the last page; empty: none
    std::vector<NamedSum> sums{};
};

/// Begins a group that is called \a name.
void beginGroup(Report &report, const QString &name);

/// Ends the group with the sums of its plain rows.
void endGroup(Report &report, const QString &name);

/// Adds the plain rows of all groups up, under \a name.
void addTotals(Report &report, const QString &name);

/// The sum of a column's plain rows from \a first on, exact to four decimals; NULL counts nothing. Where a
/// value is no number, the sum is none.
double columnSum(const Report &report, std::size_t column, std::size_t first = 0);

} // namespace base

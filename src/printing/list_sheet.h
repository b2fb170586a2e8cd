#pragma once

#include "base/column.h"
#include "printing/sheet.h"

#include <QStringList>

#include <optional>
#include <vector>

// Lists on plain paper: rosters, ledgers, balance lists. One table, as many pages as it takes.
namespace printing
{

struct List
{
    QString title;
    QString remark; // over the table, left
    QString date;   // over the table, right
    std::vector<base::Column> columns;
    std::vector<QStringList> rows; // a cell may hold line breaks
    std::optional<QStringList> totals{};
    double paperWidth = 210; // millimetres
    double paperHeight = 297;
};

/// The pages of \a list, each with title, headings and page number; one page when there are no rows. Columns
/// that do not fit side by side are all made narrower. Text that is too long is made smaller or broken into
/// lines, and never leaves its cell; numbers stay on one line.
std::vector<Sheet> listSheets(const List &list);

} // namespace printing

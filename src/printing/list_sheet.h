#pragma once

#include "base/report.h"
#include "printing/sheets.h"

// Reports on plain paper: rosters, ledgers, balance lists. One table, as many pages as it takes.
namespace printing
{

enum class ListPaper { Upright, Lying }; // A4

/// Upright for few columns.
ListPaper paperFor(const base::Report &report);
/// Upright as long as the columns have their widths there.
ListPaper paperByWidths(const base::Report &report);

/// The pages of \a report, each with title, remark, \a date, headings and page number; one page when there
/// are no rows. The heading of a group is never the last row of a page. Columns that do not fit side by side
/// are all made narrower. Text that is too long is made a little smaller or broken into lines, for which its
/// row grows, and never leaves its cell; numbers stay on one line. A page is laid out when it is looked at.
Sheets listSheets(base::Report report, const QString &date, ListPaper paper);

} // namespace printing

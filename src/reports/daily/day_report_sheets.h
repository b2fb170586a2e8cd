#pragma once

#include "printing/sheets.h"
#include "reports/daily/day_report.h"

namespace reports
{

enum class DayPaper {
    Upright, // A4; amounts alone
    Lying,   // with the details of goods
};

/// The pages of \a report: heading, a row a line, "小計" after each day, "合計" at the end and under it the
/// sums of the rates and what is to be noted; "次頁へ" at the foot of every page but the last. None where
/// there are no lines. A page is laid out when it is looked at.
printing::Sheets dayReportSheets(DayReport report, DayPaper paper);

} // namespace reports

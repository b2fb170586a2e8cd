#pragma once

#include "book/movements.h"
#include "reports/daily/day_report_kinds.h"

#include <vector>

// The slips of one kind in a period, line by line. Amounts are yen, exact to four decimals.
namespace reports
{

struct DayLine
{
    book::Movement line;
    QString counterpart; // the first line of its name; of an unknown one what it is called by
    QString remark;      // of the slip
};

/// What the lines of one rate come to.
struct DayRate
{
    QString name;      // "10%", "軽減8%", "非課税"
    double amount = 0; // with the tax lines
    double tax = 0;    // what tax lines make of that
};

struct DayReport
{
    DayReportKind kind = DayReportKind::Sales;
    book::Period period{};
    std::vector<DayLine> lines{}; // in the order of date, slip and entry
    qint64 slips = 0;
    double total = 0;
    std::vector<DayRate> rates{}; // where the lines are of several; they add up to the total

    qint64 unknownSlips = 0; // whose counterpart no register has; they are listed as all others
    // Lines of slips whose date is missing or none: no period has them.
    qint64 undatedLines = 0;
    qint64 firstUndated = 0; // a slip that has some
};

/// The daily report \a kind of \a period. Fails for a period that ends before it begins, with the sentence to
/// tell.
base::Result<DayReport> readDayReport(db::Connection &connection, DayReportKind kind,
                                      const book::Period &period);

/// What is told of a period without lines.
QString nothingInPeriod();

/// "うち消費税 1,234"; empty where there is none in lines of its own.
QString taxInWords(const DayRate &rate);

/// What of \a report is to be noted below its rows: slips of unknown counterparts, lines without a day.
QStringList notesOn(const DayReport &report);

} // namespace reports

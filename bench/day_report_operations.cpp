#include "day_report_operations.h"

#include "bare_pages.h"
#include "measuring.h"

#include "printing/pdf.h"
#include "reports/daily/day_report_sheets.h"
#include "text/dates.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

constexpr int lines = 10'000; // a busy month
const book::Period april{{2026, 4, 1}, {2026, 4, 30}};

reports::DayReport report()
{
    reports::DayReport made{.kind = reports::DayReportKind::Sales, .period = april};
    for (int i = 0; i < lines; ++i) {
        reports::DayLine each;
        each.line.slip = i / 5;
        each.line.date = text::stored(april.from.addDays(i * qint64(30) / lines));
        each.line.product = u"煎茶 %1号"_s.arg(i % 300);
        each.line.specification = u"100g"_s;
        each.line.quantity = i % 9 + 1;
        each.line.unit = u"袋"_s;
        each.line.price = 980 + i % 700;
        each.line.amount = *each.line.quantity * *each.line.price;
        each.counterpart = u"株式会社東京百貨店第%1売場"_s.arg(i / 5 % 700);
        each.remark = i % 4 ? QString() : u"請求書同封"_s;
        made.total += each.line.amount;
        made.lines.push_back(std::move(each));
    }
    return made;
}

printing::Document documentOf(reports::DayReport made)
{
    printing::Document document;
    document.title = u"納品日報"_s;
    document.sheets = reports::dayReportSheets(std::move(made), reports::DayPaper::Upright);
    return document;
}

} // namespace

void registerDayReports(std::vector<Row> &rows)
{
    auto folder = std::make_shared<QTemporaryDir>();
    auto bare = std::make_shared<BarePages>(documentOf(report()));
    rows.push_back({"a daily report to one PDF", "10,000 lines", 2});
    add(rows.size() - 1, "ours", [folder, made = report()] {
        return secondsOf([&] {
            const printing::Look look{QString::fromUtf16(bareFace)};
            const base::Status written =
                printing::writePdf(documentOf(made), look, folder->filePath(u"ours.pdf"_s));
            if (!written)
                qFatal("%s", qPrintable(written.error().text));
        });
    });
    add(rows.size() - 1, "bare",
        [folder, bare] { return secondsOf([&] { bare->write(folder->filePath(u"bare.pdf"_s)); }); });
}

} // namespace bench

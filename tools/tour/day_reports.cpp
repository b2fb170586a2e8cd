#include "day_reports.h"

#include "walker.h"

#include "ui/file_dialogs.h"

#include <QAction>
#include <QApplication>
#include <QDateEdit>
#include <QDialog>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

struct DayReport
{
    const char *item;
    const char *name;
    const char *way = nullptr; // it is printed
};

constexpr DayReport reports[] = {{"mnuReportDayOut", "sales-report", "Option2"},
                                 {"mnuReportDayRev", "receipts-report", "Option1"},
                                 {"mnuReportDayIn", "purchases-report"},
                                 {"mnuReportDayPay", "payments-report"},
                                 {"mnuReportTana", "stocktakes"},
                                 {"mnuUrikakeReport", "receivables-carried"},
                                 {"mnuKaikakeReport", "payables-carried"}};

// Of the last months.
void print(Walker &walker, QDialog &screen, const QString &way, const QString &fileName)
{
    auto &from = walker.on(screen).the<QDateEdit>(u"DTPicker1"_s);
    from.setDate(from.date().addMonths(-3));
    walker.on(screen).press(way);
    walker.on(screen).press(u"Command5"_s);
    walker.visit(
        u"preview of the daily report"_s, [&] { walker.on(screen).press(u"Command3"_s); },
        [&](QDialog &preview) {
            ui::file_dialogs::expectFile(fileName);
            walker.on(preview).press(u"cmdPdf"_s);
        });
}

} // namespace

void lookIntoDayReports(Walker &walker, QWidget &window, const QDir &folder)
{
    for (const DayReport &report : reports) {
        const QString name = QString::fromLatin1(report.name);
        const QString fileName = folder.filePath(name + u".pdf"_s);
        walker.visit(
            name, [&] { walker.on(window).the<QAction>(QString::fromLatin1(report.item)).trigger(); },
            [&](QDialog &screen) {
                QApplication::processEvents();
                if (report.way)
                    print(walker, screen, QString::fromLatin1(report.way), fileName);
                walker.picture(screen, name);
            });
        if (report.way)
            walker.pages(fileName, name);
    }
}

} // namespace tour

#include "bill_list.h"

#include "walker.h"

#include "ui/file_dialogs.h"

#include <QApplication>
#include <QDialog>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

void printFrom(Walker &walker, QDialog &screen, const QString &fileName, const QString &name)
{
    walker.visit(
        name + u" preview"_s, [&] { walker.on(screen).press(u"Command2"_s); },
        [&](QDialog &preview) {
            ui::file_dialogs::expectFile(fileName);
            walker.on(preview).press(u"cmdPdf"_s);
        });
    walker.pages(fileName, name);
}

void lookAtCharts(Walker &walker, QDialog &charts, const QDir &folder)
{
    QApplication::processEvents();
    walker.picture(charts, u"chart-months"_s);
    walker.on(charts).choose(u"Combo1"_s, 3);
    walker.picture(charts, u"chart-goods"_s);
    printFrom(walker, charts, folder.filePath(u"chart-goods.pdf"_s), u"chart-goods"_s);
    walker.on(charts).choose(u"Combo1"_s, 1);
    printFrom(walker, charts, folder.filePath(u"chart-years.pdf"_s), u"chart-years"_s);
}

} // namespace

void lookIntoBillList(Walker &walker, QWidget &window, const QDir &folder)
{
    walker.visit(
        u"bill list"_s, [&] { walker.on(window).press(u"Command4"_s); },
        [&](QDialog &list) {
            QApplication::processEvents();
            walker.picture(list, u"bill-list"_s);
            printFrom(walker, list, folder.filePath(u"bill-list.pdf"_s), u"bill-list"_s);
            walker.visit(
                u"charts"_s, [&] { walker.on(list).press(u"cmdCharts"_s); },
                [&](QDialog &charts) { lookAtCharts(walker, charts, folder); });
        });
}

} // namespace tour

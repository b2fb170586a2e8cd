#include "roster.h"

#include "walker.h"

#include "ui/file_dialogs.h"

#include <QAction>
#include <QDialog>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace tour
{

void printRoster(Walker &walker, QWidget &window, const QDir &folder)
{
    const QString fileName = folder.filePath(u"roster.pdf"_s);
    const auto savePdf = [&](QDialog &preview) {
        walker.picture(preview, u"roster-preview"_s);
        ui::file_dialogs::expectFile(fileName);
        walker.on(preview).press(u"cmdPdf"_s);
    };
    walker.visit(
        u"roster"_s, [&] { walker.on(window).the<QAction>(u"mnuCustomOut"_s).trigger(); },
        [&](QDialog &screen) {
            walker.on(screen).choose(u"Combo1"_s, u"住所1"_s);
            walker.on(screen).enter(u"txtKey"_s, u"長野県"_s);
            walker.picture(screen, u"customer-search"_s);
            walker.on(screen).press(u"Command2"_s);
            walker.picture(screen, u"customers-found"_s);
            walker.on(screen).press(u"cmdMore"_s);
            walker.on(screen).choose(u"comboItem2"_s, u"納品先区分"_s);
            walker.on(screen).choose(u"comboNames2"_s, u"法人"_s);
            walker.on(screen).choose(u"comboItem3"_s, u"登録日"_s);
            walker.on(screen).enter(u"txtKey3"_s, u"2026/1"_s);
            walker.on(screen).enter(u"txtUntil3"_s, u"2026/12"_s);
            walker.on(screen).press(u"Command2"_s);
            walker.picture(screen, u"customers-found-by-conditions"_s);
            walker.on(screen).press(u"cmdMore"_s);
            walker.on(screen).choose(u"Combo1"_s, u"すべて選択"_s);
            walker.visit(
                u"roster options"_s, [&] { walker.on(screen).press(u"Command1"_s); },
                [&](QDialog &options) {
                    walker.picture(options, u"roster-options"_s);
                    walker.visit(
                        u"roster preview"_s, [&] { walker.on(options).press(u"Command49"_s); }, savePdf);
                    for (const int column : {2, 4, 5, 11, 12, 13, 14, 15})
                        walker.on(options).press(u"chkColumn%1"_s.arg(column));
                    walker.visit(
                        u"roster of all columns"_s, [&] { walker.on(options).press(u"Command49"_s); },
                        [&](QDialog &preview) { walker.picture(preview, u"roster-all-columns"_s); });
                });
        });
    walker.check(QFileInfo(fileName).size() > 1000, u"the roster is not there as PDF"_s);
}

} // namespace tour

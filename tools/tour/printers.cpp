#include "printers.h"

#include "app/main_window/frmAMain.h"
#include "support/fake_printers.h"
#include "ui/prompts.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QAction>
#include <QDialog>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

std::shared_ptr<FakePrinters> printers(const QDate &today)
{
    using printing::JobState;
    using printing::Medium;
    const Medium a4{u"iso_a4_210x297mm"_s, {210, 297}, {4.2, 4.2, 4.2, 4.2}};
    const Medium form{u"custom_241.3x114.3mm"_s, {241.3, 114.3}, {6.35, 12.7, 6.35, 12.7}};
    auto made = std::make_shared<FakePrinters>();
    made->names = QStringList{u"Jimusho-Laser"_s, u"Souko-Dot"_s};
    made->usual = u"Jimusho-Laser"_s;
    made->can[u"Jimusho-Laser"_s] = {.media = {a4, {u"iso_a5_148x210mm"_s, {148, 210}, a4.margins}},
                                     .usualPaper = a4,
                                     .bins = {u"tray-1"_s, u"manual"_s},
                                     .usualBin = u"tray-1"_s,
                                     .mostCopies = 999};
    made->can[u"Souko-Dot"_s] = {.media = {a4},
                                 .custom = printing::CustomSizes{{25, 25}, 381, {}, form.margins},
                                 .usualPaper = form,
                                 .mostCopies = 99};
    made->list = {{12, u"Souko-Dot"_s, u"納品書 O2"_s, JobState::Stopped, {today, QTime(10, 42)}},
                  {11, u"Jimusho-Laser"_s, u"納品書 O1"_s, JobState::Done, {today, QTime(9, 58)}}};
    return made;
}

} // namespace

void setPrintersUp(Walker &walker, workspace::Workspace &workspace, app::frmAMain &window)
{
    printing::keepPrintSystem(workspace, printers(workspace.today()));
    walker.visit(
        u"printer of notes"_s, [&] { walker.on(window).press(u"LblPrinterName"_s); },
        [&](QDialog &screen) {
            walker.on(screen).choose(u"Combo2"_s, u"Jimusho-Laser"_s);
            walker.on(screen).enter(u"Text2"_s, u"２"_s);
            walker.on(screen).enter(u"Text3"_s, u"-1"_s);
            walker.picture(screen, u"printer-of-notes"_s);
            walker.visit(
                u"calibration sheet"_s,
                [&] {
                    ui::prompts::expectAskWhichWay(u"どちらの用紙の位置を合わせますか。"_s, u"納品書"_s);
                    walker.on(screen).press(u"Command49"_s);
                },
                [&](QDialog &preview) {
                    walker.picture(preview, u"calibration-sheet"_s);
                    walker.visit(
                        u"print dialog"_s, [&] { walker.on(preview).press(u"cmdPrint"_s); },
                        [&](QDialog &print) { walker.picture(print, u"print-dialog"_s); });
                });
            walker.visit(
                u"printers of other purposes"_s, [&] { walker.on(screen).press(u"cmdPurposes"_s); },
                [&](QDialog &others) { walker.picture(others, u"printers-of-other-purposes"_s); });
            walker.on(screen).press(u"Command1"_s);
        });
    walker.visit(
        u"printer of slips"_s, [&] { walker.on(window).press(u"Picture3"_s); },
        [&](QDialog &screen) {
            walker.picture(screen, u"printer-of-slips-paper-refused"_s);
            walker.on(screen).choose(u"Combo3"_s, u"Souko-Dot"_s);
            walker.on(screen).press(u"Check1"_s);
            walker.on(screen).press(u"Command2"_s);
            walker.picture(screen, u"printer-of-slips"_s);
        });
    walker.visit(
        u"print jobs"_s, [&] { walker.on(window).the<QAction>(u"mnuPrintJobs"_s).trigger(); },
        [&](QDialog &screen) { walker.picture(screen, u"print-jobs"_s); });
    walker.check(workspace.settings.integer(workspace::keys::offsetB) == 2,
                 u"the position of notes is not stored"_s);
    walker.check(workspace.settings.text(workspace::keys::kuroPrinterName) == u"Souko-Dot"_s,
                 u"the printer of slips is not stored"_s);
}

} // namespace tour

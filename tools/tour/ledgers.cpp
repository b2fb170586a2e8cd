#include "ledgers.h"

#include "walker.h"

#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QTableView>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

void printLedger(Walker &walker, QDialog &ledger, const QString &fileName)
{
    walker.visit(
        u"ledger preview"_s, [&] { walker.on(ledger).press(u"Command2"_s); },
        [&](QDialog &preview) {
            walker.picture(preview, u"ledger-preview"_s);
            ui::file_dialogs::expectFile(fileName);
            walker.on(preview).press(u"cmdPdf"_s);
        });
    walker.check(QFileInfo(fileName).size() > 1000, u"the ledger is not there as PDF"_s);
}

// The notes and the estimate that were saved on the way here are whole.
void lookAtIssued(Walker &walker, QDialog &screen)
{
    QApplication::processEvents();
    QAbstractItemModel &rows = *walker.on(screen).the<QTableView>(u"grdIssued"_s).model();
    walker.check(rows.rowCount() > 1, u"what was issued is not kept"_s);
    walker.picture(screen, u"issued-documents"_s);
    ui::prompts::expectInform(
        u"%1 件の控えを検査しました。すべて発行した時のまま残っています。"_s.arg(rows.rowCount()));
    walker.on(screen).press(u"cmdVerifyAll"_s);
}

} // namespace

void lookIntoLedgers(Walker &walker, QWidget &window, const QDir &folder)
{
    const auto choose = [&](const QString &item) {
        return [&walker, &window, item] { walker.on(window).the<QAction>(item).trigger(); };
    };
    walker.visit(u"balances"_s, choose(u"mnuReportZandaka"_s), [&](QDialog &balances) {
        QApplication::processEvents(); // the list comes when the screen is there
        walker.picture(balances, u"receivable-balances"_s);
        walker.visit(
            u"ledger"_s, [&] { walker.on(balances).press(u"Command4"_s); },
            [&](QDialog &ledger) {
                walker.picture(ledger, u"receivable-ledger"_s);
                printLedger(walker, ledger, folder.filePath(u"ledger.pdf"_s));
            });
    });
    walker.visit(u"payable ledger"_s, choose(u"mnuInMoto"_s), [&](QDialog &ledger) {
        walker.on(ledger).the<QLineEdit>(u"txtKey1"_s).setText(u"千曲"_s);
        walker.on(ledger).press(u"Command1"_s);
        walker.checkText(ledger, u"txtSum5"_s, u"46,493"_s);
        walker.picture(ledger, u"payable-ledger"_s);
    });
    walker.visit(u"stock"_s, choose(u"mnuTanaMoto"_s), [&](QDialog &stock) {
        QApplication::processEvents();
        walker.picture(stock, u"stock-ledger"_s);
        walker.visit(
            u"goods"_s, [&] { walker.on(stock).press(u"Command4"_s); },
            [&](QDialog &goods) { walker.picture(goods, u"goods-ledger"_s); });
    });
    walker.visit(u"issued documents"_s, choose(u"mnuIssued"_s),
                 [&](QDialog &screen) { lookAtIssued(walker, screen); });
    walker.visit(u"payable-balances"_s, choose(u"mnuReportInZandaka"_s), [&](QDialog &screen) {
        QApplication::processEvents();
        walker.picture(screen, u"payable-balances"_s);
    });
}

} // namespace tour

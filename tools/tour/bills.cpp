#include "bills.h"

#include "walker.h"

#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QDateEdit>
#include <QDialog>
#include <QFileInfo>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

void compute(Walker &walker, QDialog &screen)
{
    walker.on(screen).the<QLineEdit>(u"txtKey1"_s).setText(u"高島"_s);
    walker.on(screen).press(u"Command1"_s);
    walker.on(screen).the<QDateEdit>(u"DTPicker2"_s).setDate({2026, 4, 30});
    walker.on(screen).the<QDateEdit>(u"DTPicker1"_s).setDate({2026, 4, 1});
    walker.checkText(screen, u"Text3"_s, u"115,000"_s);
    walker.checkText(screen, u"txtTanka"_s, u"11,500"_s);
    walker.picture(screen, u"bill"_s);
}

void printWithTax(Walker &walker, QDialog &screen, const QString &fileName)
{
    ui::prompts::expectAskWhichWay(u"消費税 11,500 円がまだ計上されていません。"_s, u"計上して印刷"_s);
    ui::prompts::expectInform(u"すべてのデータを排出しました。"_s);
    walker.visit(
        u"bill preview"_s, [&] { walker.on(screen).press(u"Command2"_s); },
        [&](QDialog &preview) {
            ui::file_dialogs::expectFile(fileName);
            walker.on(preview).press(u"cmdPdf"_s);
        });
    walker.checkText(screen, u"Text5"_s, u"126,500"_s);
    walker.picture(screen, u"bill-tax-booked"_s);
    walker.pages(fileName, u"bill"_s);
}

} // namespace

void issueBill(Walker &walker, QWidget &window, const QDir &folder)
{
    const QString fileName = folder.filePath(u"bill.pdf"_s);
    walker.visit(
        u"bill"_s, [&] { walker.on(window).press(u"Command27"_s); },
        [&](QDialog &screen) {
            compute(walker, screen);
            printWithTax(walker, screen, fileName);
            ui::prompts::expectAskCautiously(u"表示中のレコードを削除します。よろしいですか。"_s, true);
            walker.on(screen).press(u"cmdMasterCancel"_s);
            walker.checkText(screen, u"Text6"_s, u"11,500"_s);
        });
    walker.check(QFileInfo(fileName).size() > 1000, u"the bill is not there as PDF"_s);
}

} // namespace tour

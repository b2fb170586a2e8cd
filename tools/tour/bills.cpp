#include "bills.h"

#include "walker.h"

#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QComboBox>
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

void issueAll(Walker &walker, QDialog &list, const QString &target)
{
    walker.on(list).choose(u"cmbClosing"_s, u"20 日"_s);
    walker.on(list).the<QDateEdit>(u"DTPicker1"_s).setDate({2026, 4, 1});
    walker.on(list).the<QDateEdit>(u"DTPicker2"_s).setDate({2026, 4, 30});
    walker.on(list).enter(u"txtMessage"_s, u"4月29日から5月5日まで休業いたします。"_s);
    walker.on(list).press(u"cmdList"_s);
    walker.picture(list, u"bills-with-unbooked-tax"_s);
    walker.on(list).choose(u"cmbClosing"_s, u"末日"_s);
    walker.on(list).press(u"cmdList"_s);
    ui::file_dialogs::expectFile(target);
    ui::prompts::expectInform(u"すべてのデータを排出しました。"_s, ui::prompts::anyRemark);
    walker.on(list).press(u"cmdPdf"_s);
    walker.picture(list, u"bills-issued"_s);
}

} // namespace

void issueAllBills(Walker &walker, QWidget &window, const QDir &folder)
{
    const QDir target(folder.filePath(u"bills"_s));
    walker.check(target.mkpath(u"."_s), u"no folder for the bills"_s);
    walker.on(window).the<QComboBox>(u"Combo7"_s).setCurrentText(u"A4 無地"_s);
    walker.visit(
        u"bills of a closing day"_s, [&] { walker.on(window).press(u"Command27"_s); },
        [&](QDialog &screen) {
            walker.visit(
                u"list of bills"_s, [&] { walker.on(screen).press(u"cmdIssueAll"_s); },
                [&](QDialog &list) { issueAll(walker, list, target.path()); });
        });
    const QStringList files = target.entryList(QDir::Files, QDir::Name);
    walker.check(files.size() > 1, u"the bills are not there as PDF"_s);
    for (const QString &file : files)
        walker.pages(target.filePath(file), u"bill-of-all"_s);
}

void issueBill(Walker &walker, QWidget &window, const QDir &folder)
{
    const QString fileName = folder.filePath(u"bill.pdf"_s);
    walker.visit(
        u"bill"_s, [&] { walker.on(window).press(u"Command27"_s); },
        [&](QDialog &screen) {
            compute(walker, screen);
            printWithTax(walker, screen, fileName);
            ui::prompts::expectAskCautiously(u"表示中のレコードを削除します。よろしいですか。"_s, true,
                                             ui::prompts::anyRemark);
            walker.on(screen).press(u"cmdMasterCancel"_s);
            walker.checkText(screen, u"Text6"_s, u"11,500"_s);
        });
    walker.check(QFileInfo(fileName).size() > 1000, u"the bill is not there as PDF"_s);
}

} // namespace tour

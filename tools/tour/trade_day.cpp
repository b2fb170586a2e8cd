#include "trade_day.h"

#include "walker.h"

#include "db/connection.h"
#include "ui/file_dialogs.h"
#include "workspace/workspace.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace tour
{

namespace
{

struct Goods
{
    QString product;
    QString quantity;
    QString unit;
    QString price;
};

void openSlip(Walker &walker, QDialog &screen, const QString &key)
{
    walker.on(screen).the<QLineEdit>(u"txtKey1"_s).setText(key);
    walker.on(screen).press(u"Command1"_s);
    walker.on(screen).press(u"cmdMasterUpdate"_s);
}

void enterGoods(Walker &walker, QDialog &screen, const QList<Goods> &lines)
{
    for (const Goods &line : lines) {
        walker.on(screen).the<QComboBox>(u"dbcShohin"_s).setEditText(line.product);
        walker.on(screen).the<QComboBox>(u"dbcTani"_s).setEditText(line.unit);
        walker.on(screen).enter(u"txtCnt"_s, line.quantity);
        walker.on(screen).enter(u"txtTanka"_s, line.price);
        walker.on(screen).press(u"cmdSubAdd"_s);
    }
}

struct Visit
{
    const char16_t *menu;
    const char16_t *picture;
    const char16_t *counterpart; // its search key
};

void enterGoodsSlip(Walker &walker, QWidget &window, const Visit &visit, const QList<Goods> &lines)
{
    walker.visit(
        QString::fromUtf16(visit.picture),
        [&] { walker.on(window).the<QAction>(QString::fromUtf16(visit.menu)).trigger(); },
        [&](QDialog &screen) {
            openSlip(walker, screen, QString::fromUtf16(visit.counterpart));
            enterGoods(walker, screen, lines);
            walker.picture(screen, QString::fromUtf16(visit.picture));
            walker.on(screen).press(u"cmdNext"_s);
        });
}

void enterMoneySlip(Walker &walker, QWidget &window, const Visit &visit, const QString &amount)
{
    walker.visit(
        QString::fromUtf16(visit.picture),
        [&] { walker.on(window).the<QAction>(QString::fromUtf16(visit.menu)).trigger(); },
        [&](QDialog &screen) {
            openSlip(walker, screen, QString::fromUtf16(visit.counterpart));
            walker.on(screen).the<QComboBox>(u"cmbShohin"_s).setCurrentIndex(0);
            walker.on(screen).the<QComboBox>(u"cmbKikaku"_s).setCurrentIndex(0);
            walker.on(screen).enter(u"txtKingaku"_s, amount);
            walker.on(screen).press(u"cmdSubAdd"_s);
            walker.picture(screen, QString::fromUtf16(visit.picture));
            walker.on(screen).press(u"cmdNext"_s);
        });
}

void printEstimate(Walker &walker, QDialog &screen, const QString &fileName)
{
    walker.visit(
        u"estimate dialog"_s, [&] { walker.on(screen).press(u"Command3"_s); },
        [&](QDialog &dialog) {
            walker.checkText(dialog, u"txtKingaku"_s, u"111,760"_s);
            walker.on(dialog).enter(u"Text1"_s, u"月末締め翌月末振込"_s);
            walker.on(dialog).enter(u"Text2"_s, u"貴店お届け"_s);
            walker.picture(dialog, u"estimate-dialog"_s);
            walker.visit(
                u"estimate preview"_s, [&] { walker.on(dialog).press(u"Command2"_s); },
                [&](QDialog &preview) {
                    walker.picture(preview, u"estimate-preview"_s);
                    ui::file_dialogs::expectFile(fileName);
                    walker.on(preview).press(u"cmdPdf"_s);
                });
        });
    walker.check(QFileInfo(fileName).size() > 1000, u"the estimate is not there as PDF"_s);
}

void enterEstimate(Walker &walker, QWidget &window, const QString &fileName)
{
    QList<Goods> lines;
    for (int i = 0; i < 20; ++i)
        lines << Goods{i % 2 ? u"シャインマスカット"_s : u"信州りんご　サンふじ"_s, u"2"_s, u"箱"_s,
                       u"2,540"_s};
    walker.visit(
        u"estimate"_s, [&] { walker.on(window).the<QAction>(u"mnuMitumori"_s).trigger(); },
        [&](QDialog &screen) {
            openSlip(walker, screen, u"みやざき"_s);
            enterGoods(walker, screen, lines);
            walker.on(screen).enter(u"txtMemo"_s, u"送料は別途申し受けます。"_s);
            walker.on(screen).enter(u"Text4"_s, u"のし紙は無料です。"_s);
            walker.picture(screen, u"estimate"_s);
            printEstimate(walker, screen, fileName);
            walker.on(screen).press(u"cmdNext"_s);
        });
}

// What the day left in the books, counted without the program's own statements. The estimate and the count of
// the stock are in nobody's balance.
void checkBooks(Walker &walker, db::Connection &connection)
{
    const struct
    {
        const char16_t *name;
        const char16_t *sql;
        const char16_t *expected;
    } facts[] = {
        {u"payable",
         u"SELECT CAST(sum(CASE substr(伝票番号, 1, 1) WHEN 'P' THEN -金額 ELSE 金額 END) AS INTEGER) FROM "
         u"入出庫マスター AS m JOIN 入出庫サブ AS s ON s.ID = m.ID WHERE 伝票番号 GLOB '[AIP]*'",
         u"57500"},
        {u"receivable of the first customer",
         u"SELECT CAST(sum(CASE substr(伝票番号, 1, 1) WHEN 'R' THEN -金額 ELSE 金額 END) AS INTEGER) FROM "
         u"入出庫マスター AS m JOIN 入出庫サブ AS s ON s.ID = m.ID WHERE 伝票番号 GLOB '[BOR]*' AND 相手先ID "
         u"= 1",
         u"3822"},
        {u"slips",
         u"SELECT group_concat(n, ' ') FROM (SELECT substr(伝票番号, 1, 1) || count(*) AS n FROM "
         u"入出庫マスター WHERE substr(伝票番号, 1, 1) <> 'O' GROUP BY substr(伝票番号, 1, 1) ORDER BY 1)",
         u"A1 B1 I1 M1 P1 R1 T1"},
        {u"estimate",
         u"SELECT CAST(sum(金額) AS INTEGER) FROM 入出庫マスター AS m JOIN 入出庫サブ AS s ON s.ID = "
         u"m.ID WHERE 伝票番号 LIKE 'M%'",
         u"111760"},
    };
    for (const auto &fact : facts) {
        const auto rows = connection.select(QString::fromUtf16(fact.sql));
        const QString found = rows && !rows->isEmpty() ? rows->rows.front().front().toString() : QString();
        walker.check(found == QString::fromUtf16(fact.expected),
                     QString::fromUtf16(fact.name) + u" is "_s + found);
    }
}

} // namespace

void tradeForADay(Walker &walker, workspace::Workspace &workspace, QWidget &window, const QDir &folder)
{
    enterMoneySlip(walker, window, {u"mnuUrikakeKurikoshi", u"receivable-carried", u"やまだ"}, u"5,000"_s);
    enterMoneySlip(walker, window, {u"mnuKaikakeKurikoshi", u"payable-carried", u"安曇野"}, u"30,000"_s);
    // 34,091 yen with 3,409 of tax.
    enterGoodsSlip(
        walker, window, {u"mnuDenIn", u"purchase", u"安曇野"},
        {{u"りんご　原料用"_s, u"20"_s, u"箱"_s, u"1,450"_s}, {u"化粧箱"_s, u"100"_s, u"枚"_s, u"50.91"_s}});
    enterMoneySlip(walker, window, {u"mnuPayment", u"payment", u"安曇野"}, u"１０，０００"_s);
    enterMoneySlip(walker, window, {u"mnuReceipt", u"receipt", u"やまだ"}, u"10,000"_s);
    enterGoodsSlip(walker, window, {u"mnuPreTana", u"stocktake", u"安曇野"},
                   {{u"りんご　原料用"_s, u"3"_s, u"箱"_s, u"1,450"_s}});
    enterEstimate(walker, window, folder.filePath(u"estimate.pdf"_s));
    checkBooks(walker, workspace.connection);
}

} // namespace tour

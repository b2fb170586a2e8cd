// What the sales screen refuses, asks about and cannot do.
#include "slips/entry/sales_desk.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QTableView>

using namespace Qt::StringLiterals;

namespace
{

const QString typedLineQuestion = u"入力途中の明細は、まだ伝票に入っていません。入れずに進みますか。"_s;

} // namespace

class TestFrmOutRefusals : public ScriptedTest
{
    Q_OBJECT

private slots:
    void headerNeedsCustomerAndEmployee();
    void earlyDateIsRefusedNotAltered();
    void lineNeedsProductQuantityAndPrice();
    void impossibleNumbersAreRefused_data();
    void impossibleNumbersAreRefused();
    void manualNumbers();
    void theTaxGoesByTheClassOfNow_data();
    void theTaxGoesByTheClassOfNow();
    void theHeaderGoesByTheClassOfNow();
    void leavingTheNumberChecksIt();
    void typedLineIsNotDroppedUnasked();
    void slipDeletedElsewhereIsLeft_data();
    void slipDeletedElsewhereIsLeft();
    void linesOfOthersCount();
    void leavingAnOpenSlipAsks_data();
    void leavingAnOpenSlipAsks();
    void refusedWritesLeaveTheScreenAsItWas();
};

void TestFrmOutRefusals::headerNeedsCustomerAndEmployee()
{
    SalesDesk desk;
    ui::prompts::expectInform(u"納品先が選択されていません。"_s);
    desk.press("cmdMasterUpdate");
    desk.shop.workspace.panel.employeeId = 0;
    desk.choose(0);
    ui::prompts::expectInform(u"担当者が選択されていません。"_s);
    desk.press("cmdMasterUpdate");
    desk.shop.workspace.panel.employeeId = 1;
    desk.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 5"_s);
    ui::prompts::expectInform(
        u"選択した納品先は削除されているため、伝票を保存できませんでした。納品先を検索し直してください。"_s);
    desk.press("cmdMasterUpdate");
    QVERIFY(desk.hasFocus("txtKey1"));
    QCOMPARE(desk.usable(), headerOnly);
    QCOMPARE(desk.headers().size(), 0);
}

// A box that takes no year 1899 would keep its own year beside the day that was typed.
void TestFrmOutRefusals::earlyDateIsRefusedNotAltered()
{
    SalesDesk desk;
    desk.choose(0);
    auto &date = desk.the<QDateEdit>("DTPicker1");
    date.setFocus();
    date.setSelectedSection(QDateTimeEdit::YearSection);
    QTest::keyClicks(&date, u"18991231"_s);
    ui::prompts::expectInform(
        u"日付が正しくないため、伝票を保存できませんでした。日付を入力し直してください。"_s);
    desk.press("cmdMasterUpdate");
    QCOMPARE(date.date(), QDate(1899, 12, 31));
    QVERIFY(date.hasFocus());
    QCOMPARE(desk.headers().size(), 0);
}

void TestFrmOutRefusals::lineNeedsProductQuantityAndPrice()
{
    SalesDesk desk;
    desk.open(0);
    ui::prompts::expectInform(u"商品が選択されていません。"_s);
    desk.line(u"1"_s, u"1"_s, {});
    QVERIFY(desk.hasFocus("dbcShohin"));
    ui::prompts::expectInform(u"数量が入力されていません。"_s);
    desk.line({}, u"1"_s);
    QVERIFY(desk.hasFocus("txtCnt"));
    ui::prompts::expectAskCautiously(u"単価が入力されていません。よろしいですか。"_s, false);
    desk.line(u"2"_s, {});
    QVERIFY(desk.hasFocus("txtTanka"));
    QCOMPARE(desk.shortLines(), QStringList());
    QCOMPARE(desk.usable(), saved);
    ui::prompts::expectAskCautiously(u"単価が入力されていません。よろしいですか。"_s, true);
    desk.line(u"2"_s, {});
    QCOMPARE(desk.shortLines(), QStringList{u"1|ふじりんご|2|0|0"_s});
    QCOMPARE(desk.usable(), withLines);
    desk.press("cmdNext");
    QCOMPARE(desk.shortLines().size(), 1); // no tax on nothing
}

void TestFrmOutRefusals::impossibleNumbersAreRefused_data()
{
    QTest::addColumn<QString>("quantity");
    QTest::addColumn<QString>("price");
    QTest::addColumn<QString>("sentence");
    QTest::addColumn<QString>("focus");
    const QString number = u"には数字を入力してください。"_s;
    const QString great =
        u"金額が大きすぎるため、計算できません。９０００億円以内になるように入力してください。"_s;
    QTest::newRow("letters") << u"abc"_s << u"1"_s << u"数量"_s + number << u"txtCnt"_s;
    QTest::newRow("sign alone") << u"-"_s << u"1"_s << u"数量"_s + number << u"txtCnt"_s;
    QTest::newRow("price") << u"1"_s << u"十円"_s << u"単価"_s + number << u"txtTanka"_s;
    QTest::newRow("exponent") << u"1e400"_s << u"1"_s << u"数量"_s + number << u"txtCnt"_s;
    QTest::newRow("great") << u"999999999"_s << u"999999999"_s << great << u"txtCnt"_s;
}

void TestFrmOutRefusals::impossibleNumbersAreRefused()
{
    QFETCH(QString, quantity);
    QFETCH(QString, price);
    QFETCH(QString, sentence);
    QFETCH(QString, focus);
    SalesDesk desk;
    desk.open(0);
    ui::prompts::expectInform(sentence);
    desk.line(quantity, price);
    QVERIFY(desk.hasFocus(qPrintable(focus)));
    QCOMPARE(desk.shortLines(), QStringList());
    QCOMPARE(desk.usable(), saved);
}

void TestFrmOutRefusals::manualNumbers()
{
    SalesDesk desk(false);
    QCOMPARE(desk.text("txtDenNo"), QString());
    QVERIFY(!desk.box("txtDenNo").isReadOnly());
    const auto save = [&](const QString &number) {
        desk.choose(0);
        QVERIFY(desk.hasFocus("txtDenNo"));
        desk.box("txtDenNo").setText(number);
        desk.press("cmdMasterUpdate");
    };
    ui::prompts::expectInform(u"伝票番号に誤りがあります。"_s,
                              u"この画面の伝票番号は、半角の大文字「I」で始めてください（例：I100）。"_s);
    save(u"O1"_s);
    QVERIFY(desk.hasFocus("txtDenNo"));
    // In the books it is a purchase: of a supplier who has nothing to do with it, or of nobody.
    const QString counts = u"伝票番号「I1」の最初の文字は仕入を表すため、この伝票は納品ではなく、"
                           "仕入先「山本問屋」（ID 5）の仕入として数えられます。このまま保存しますか。"_s;
    const QString ofNobody =
        u"伝票番号「I1」の最初の文字は仕入を表すため、この伝票は納品ではなく、どの仕入先のものでもない仕入"
        "（ID 5 の仕入先は登録されていません）として数えられます。このまま保存しますか。"_s;
    const QString automatic =
        u"番号を自動で付けると、納品の伝票になります（メイン画面の「伝票番号を自動で設定」）。"_s;
    ui::prompts::expectAskCautiously(ofNobody, false, automatic);
    save(u"I1"_s);
    desk.shop.run(u"INSERT INTO 仕入先 (仕入先ID, 仕入先名1) VALUES (5, '山本問屋')"_s);
    ui::prompts::expectAskCautiously(counts, false, automatic);
    save(u"I1"_s);
    QCOMPARE(desk.shop.rows(u"SELECT 伝票番号 FROM 入出庫マスター"_s), QStringList());
    QVERIFY(desk.hasFocus("txtDenNo"));
    ui::prompts::expectAskCautiously(counts, true, automatic);
    save(u"I1"_s);
    QCOMPARE(desk.usable(), saved);
    desk.line(u"1"_s, u"1"_s);
    desk.press("cmdNext");
    QCOMPARE(desk.text("txtDenNo"), QString());
    ui::prompts::expectInform(u"伝票番号が重複しています。"_s);
    save(u"I1"_s);
    QVERIFY(desk.hasFocus("txtDenNo"));
    QCOMPARE(desk.shop.rows(u"SELECT 伝票番号 FROM 入出庫マスター"_s), QStringList{u"I1"_s});
}

// Another program changes the class while the slip is entered.
void TestFrmOutRefusals::theTaxGoesByTheClassOfNow_data()
{
    QTest::addColumn<int>("now");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("on the bill") << 1 << QStringList{u"ふじりんご"_s};
    QTest::newRow("included") << 2 << QStringList{u"ふじりんご"_s};
    QTest::newRow("as it was") << 0 << QStringList{u"ふじりんご"_s, u"消費税"_s};
}

void TestFrmOutRefusals::theTaxGoesByTheClassOfNow()
{
    QFETCH(int, now);
    SalesDesk desk;
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    desk.shop.run(u"UPDATE 納品先 SET 消費税区分 = ?"_s, {now});
    if (now != 0) {
        ui::prompts::expectInform({});
        desk.press("cmdNext");
        QCOMPARE(desk.text("txtTaxK"), QString::number(now));
        QCOMPARE(desk.the<QCheckBox>("Check1").isChecked(), now == 2);
        QCOMPARE(desk.usable(), withLines);
        QCOMPARE(desk.shop.value(u"SELECT 完了 FROM 入出庫マスター"_s).toInt(), 0);
    }
    desk.press("cmdNext");
    QTEST(desk.shop.rows(u"SELECT 商品名 FROM 入出庫サブ ORDER BY 明細ID"_s), "lines");
    QCOMPARE(desk.shop.rows(u"SELECT 完了, 内税 FROM 入出庫マスター"_s),
             QStringList{now == 2 ? u"1|1"_s : u"1|0"_s});
}

// As it stands in the register when the header is stored.
void TestFrmOutRefusals::theHeaderGoesByTheClassOfNow()
{
    SalesDesk desk;
    desk.choose(0);
    desk.shop.run(u"UPDATE 納品先 SET 消費税区分 = 2"_s);
    desk.press("cmdMasterUpdate");
    QCOMPARE(desk.shop.rows(u"SELECT 内税 FROM 入出庫マスター"_s), QStringList{u"1"_s});
    QVERIFY(desk.the<QCheckBox>("Check1").isChecked());
    desk.shop.run(u"DELETE FROM 納品先"_s);
    desk.line(u"1"_s, u"1000"_s);
    desk.press("cmdNext"); // whose class nobody knows any more
    QCOMPARE(desk.shop.rows(u"SELECT 商品名 FROM 入出庫サブ"_s), QStringList{u"ふじりんご"_s});
}

void TestFrmOutRefusals::leavingTheNumberChecksIt()
{
    SalesDesk desk(false);
    desk.shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号) VALUES (1, 'I1')"_s);
    auto *number = &desk.box("txtDenNo");
    const auto leaveWith = [&](const QString &text) {
        number->setFocus();
        number->setText(text);
        QTest::keyClick(number, Qt::Key_Return);
        QTest::qWait(20);
        return desk.hasFocus("txtDenNo");
    };
    ui::prompts::expectInform(u"伝票番号に誤りがあります。"_s,
                              u"この画面の伝票番号は、半角の大文字「I」で始めてください（例：I100）。"_s);
    QVERIFY(leaveWith(u"O1"_s));
    ui::prompts::expectInform(u"伝票番号が重複しています。"_s);
    QVERIFY(leaveWith(u"I1"_s));
    QVERIFY(!leaveWith(u"I2"_s));
}

void TestFrmOutRefusals::typedLineIsNotDroppedUnasked()
{
    SalesDesk desk;
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    desk.box("txtCnt").setText(u"3"_s);
    for (const char *button : {"cmdNext", "Command3"}) {
        ui::prompts::expectAsk(typedLineQuestion, false);
        desk.press(button);
        QCOMPARE(desk.usable(), withLines);
        QCOMPARE(desk.box("txtCnt").text(), u"3"_s);
    }
    ui::prompts::expectAsk(typedLineQuestion, false);
    desk.screen().close();
    QVERIFY(desk.screen().isVisible());
    ui::prompts::expectAsk(typedLineQuestion, true);
    desk.press("cmdNext");
    QCOMPARE(desk.usable(), headerOnly);
    QCOMPARE(desk.shortLines().size(), 2); // with the tax
}

void TestFrmOutRefusals::slipDeletedElsewhereIsLeft_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QString>("refusal");
    const QString deleted = u"この伝票はほかのプログラムで削除されたため、"_s;
    QTest::newRow("next line") << QByteArray("cmdSubAdd") << deleted + u"明細を保存できませんでした。"_s;
    QTest::newRow("line taken back") << QByteArray("cmdSubCancel")
                                     << deleted + u"明細を取り消せませんでした。"_s;
    QTest::newRow("closing") << QByteArray("cmdNext") << deleted + u"閉じることができませんでした。"_s;
}

void TestFrmOutRefusals::slipDeletedElsewhereIsLeft()
{
    QFETCH(QByteArray, button);
    QFETCH(QString, refusal);
    SalesDesk desk;
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    desk.shop.run(u"DELETE FROM 入出庫サブ"_s);
    desk.shop.run(u"DELETE FROM 入出庫マスター"_s);
    desk.the<QComboBox>("dbcShohin").setEditText(u"ふじりんご"_s);
    desk.box("txtCnt").setText(u"1"_s);
    desk.box("txtTanka").setText(u"1000"_s);
    if (button == "cmdNext")
        ui::prompts::expectAsk(typedLineQuestion, true);
    ui::prompts::expectInform(refusal);
    desk.press(button.constData());
    QCOMPARE(desk.shortLines(), QStringList());
    QCOMPARE(desk.usable(), headerOnly);
    QVERIFY(desk.hasFocus("txtKey1"));
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    QCOMPARE(desk.shortLines().size(), 1);
}

void TestFrmOutRefusals::linesOfOthersCount()
{
    SalesDesk desk;
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    desk.shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (1, 'みかん', 500)"_s);
    desk.press("cmdNext");
    QCOMPARE(desk.shortLines().last(), u"1|消費税|-|-|75"_s);
    QCOMPARE(desk.the<QLabel>("lblMessage").text(),
             u"伝票 O1 を保存しました。　合計 1,500 円　消費税 75 円"_s);
}

void TestFrmOutRefusals::leavingAnOpenSlipAsks_data()
{
    QTest::addColumn<int>("taxClass");
    QTest::addColumn<QString>("price"); // empty: no line
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("question");
    QTest::addColumn<QStringList>("slip"); // number, then its lines' amounts
    using enum ui::prompts::Choice;
    const QString taxDue =
        u"伝票 O1 はまだ閉じられておらず、消費税が計上されていません。画面を閉じますか。"_s;
    const QString noneDue = u"伝票 O1 はまだ閉じられていません。画面を閉じますか。"_s;
    const QString empty = u"伝票 O1 には明細がありません。伝票を取り消しますか。"_s;
    const auto row = [](const char *name, int taxClass, const char16_t *price, ui::prompts::Choice answer,
                        const QString &question, const QStringList &slip) {
        QTest::newRow(name) << taxClass << QString::fromUtf16(price) << static_cast<int>(answer) << question
                            << slip;
    };
    const QString n = u"O1"_s;
    row("tax added", 0, u"1,000", Save, taxDue, {n, u"1000"_s, u"50"_s});
    row("left without the tax", 0, u"1,000", Discard, taxDue, {n, u"1000"_s});
    row("gone back", 0, u"1,000", Cancel, taxDue, {n, u"1000"_s});
    row("too little for a tax", 0, u"19", Save, noneDue, {n, u"19"_s});
    row("taxed on the bill", 1, u"1,000", Save, noneDue, {n, u"1000"_s});
    row("tax included, gone back", 2, u"1,000", Cancel, noneDue, {n, u"1000"_s});
    row("empty, cancelled", 0, u"", Save, empty, {});
    row("empty, left there", 0, u"", Discard, empty, {n});
    row("empty, gone back", 0, u"", Cancel, empty, {n});
    row("all lines taken back", 3, u"5", Save, empty, {});
}

// Two Esc, the first of which is meant for the list of names.
void TestFrmOutRefusals::leavingAnOpenSlipAsks()
{
    QFETCH(int, taxClass);
    QFETCH(QString, price);
    QFETCH(int, answer);
    QFETCH(QString, question);
    using ui::prompts::Choice;
    SalesDesk desk;
    desk.open(taxClass);
    if (!price.isEmpty())
        desk.line(u"１"_s, price);
    if (taxClass == 3)
        desk.press("cmdSubCancel");
    const bool isEmpty = question.contains(u"明細がありません"_s);
    ui::prompts::expectAskHowToLeave(question, static_cast<Choice>(answer),
                                     isEmpty ? Choice::Cancel : Choice::Save);
    QTest::keyClick(&desk.the("dbcShohin"), Qt::Key_Escape);
    QStringList slip = desk.shop.rows(u"SELECT 伝票番号 FROM 入出庫マスター"_s);
    slip += desk.shop.rows(u"SELECT 金額 FROM 入出庫サブ ORDER BY rowid"_s);
    QTEST(slip, "slip");
    // A cancelled one makes room for the right customer's.
    const bool cancelled = isEmpty && answer == static_cast<int>(Choice::Save);
    QCOMPARE(desk.screen().isVisible(), cancelled || answer == static_cast<int>(Choice::Cancel));
    if (cancelled) {
        QCOMPARE(desk.usable(), headerOnly);
        QVERIFY(desk.hasFocus("txtKey1"));
        desk.open(1);
        QCOMPARE(desk.text("txtDenNo"), u"O1"_s);
    } else if (answer == static_cast<int>(Choice::Cancel)) {
        QVERIFY(desk.hasFocus("dbcShohin"));
        QVERIFY(desk.usable().contains(u"cmdSubAdd"_s));
    }
}

void TestFrmOutRefusals::refusedWritesLeaveTheScreenAsItWas()
{
    SalesDesk desk;
    const auto refused = [&](const char *button) {
        desk.shop.run(u"PRAGMA query_only = ON"_s);
        ui::prompts::expectInform({});
        desk.press(button);
        desk.shop.run(u"PRAGMA query_only = OFF"_s);
    };
    desk.choose(0);
    refused("cmdMasterUpdate");
    QCOMPARE(desk.usable(), headerOnly);
    QCOMPARE(desk.headers().size(), 0);
    desk.press("cmdMasterUpdate");

    desk.the<QComboBox>("dbcShohin").setEditText(u"ふじりんご"_s);
    desk.box("txtCnt").setText(u"1"_s);
    desk.box("txtTanka").setText(u"1000"_s);
    refused("cmdSubAdd");
    QCOMPARE(desk.usable(), saved);
    QCOMPARE(desk.text("txtTanka"), u"1000"_s);
    QCOMPARE(desk.the<QTableView>("dgdSub").model()->rowCount(), 0);
    desk.press("cmdSubAdd");

    refused("Check1");
    QVERIFY(!desk.the<QCheckBox>("Check1").isChecked());
    QCOMPARE(desk.text("Text2"), u"50"_s);
    refused("cmdSubCancel");
    QCOMPARE(desk.text("txtTotal"), u"1,000"_s);
    refused("cmdNext");
    QCOMPARE(desk.usable(), withLines);
    QCOMPARE(desk.shortLines().size(), 1);
    desk.press("cmdNext");
    QCOMPARE(desk.shortLines().size(), 2);
}

QTEST_MAIN(TestFrmOutRefusals)
#include "tst_frmout_refusals.moc"

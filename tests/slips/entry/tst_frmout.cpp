#include "printing/frmPreview.h"
#include "registers/last_counterparts.h"
#include "slips/entry/sales_desk.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QPushButton>
#include <QTableView>

using namespace Qt::StringLiterals;

class TestFrmOut : public ScriptedTest
{
    Q_OBJECT

private slots:
    void lifeOfASlip();
    void worksByKeyboardAlone();
    void enterTakesTheMarkedName();
    void taxOfClassAndBox_data();
    void taxOfClassAndBox();
    void rateIsReadAgainAtTheEnd();
    void ratesOfTheTableGoByTheDate_data();
    void ratesOfTheTableGoByTheDate();
    void noSlipWithoutItsRate();
    void searchTellsWhatIsMissing();
    void newCustomerIsChosen();
    void lastLineIsRemoved();
    void cancellingDeletesTheSlip();
    void printingShowsTheNote();
    void previousLinesAreShown();
    void aBackDatedSlipsDateIsSeen();
};

void TestFrmOut::lifeOfASlip()
{
    SalesDesk desk;
    QCOMPARE(desk.usable(), headerOnly);
    QCOMPARE(desk.text("txtDenNo"), u"O"_s);
    QVERIFY(desk.box("txtDenNo").isReadOnly());
    QCOMPARE(desk.the<QDateEdit>("DTPicker1").date(), QDate(2026, 4, 1));

    desk.choose(0);
    QCOMPARE(desk.text("txtNouhinsaki1"), u"外税商店"_s);
    QCOMPARE(desk.text("Text1"), u"5"_s);
    QCOMPARE(desk.text("txtTaxK"), u"0"_s);
    desk.press("cmdMasterUpdate");
    QCOMPARE(desk.usable(), saved);
    QCOMPARE(desk.text("txtDenNo"), u"O1"_s);
    QVERIFY(desk.hasFocus("dbcShohin"));
    QCOMPARE(
        desk.shop.rows(u"SELECT ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 備考 FROM 入出庫マスター"_s),
        QStringList{u"1|2026-04-01|O1|5|1|5|-"_s});
    QCOMPARE(desk.shop.value(u"SELECT 更新日 FROM 納品先 WHERE 納品先ID = 5"_s).toString(), u"2026-04-01"_s);

    desk.line(u"２．５"_s, u"101"_s);
    QCOMPARE(desk.usable(), withLines);
    QCOMPARE(desk.shortLines(), QStringList{u"1|ふじりんご|2.5|101|252"_s});
    QCOMPARE(desk.text("Text3"), u"OFF"_s);
    QCOMPARE(desk.text("txtTotal"), u"252"_s);
    QCOMPARE(desk.text("txtCnt"), QString());
    desk.line(u"1"_s, u"1747"_s);
    QCOMPARE(desk.text("txtTotal"), u"1,999"_s);
    QCOMPARE(desk.text("Text2"), u"99"_s);

    desk.press("cmdNext");
    QCOMPARE(desk.usable(), headerOnly);
    QCOMPARE(desk.shortLines().last(), u"1|消費税|-|-|99"_s);
    QCOMPARE(desk.text("txtDenNo"), u"O"_s);
    QCOMPARE(desk.text("Text1"), QString());
    QCOMPARE(desk.text("txtTotal"), QString());
    QCOMPARE(desk.the<QTableView>("dgdSub").model()->rowCount(), 0);
    desk.open(1);
    QCOMPARE(desk.text("txtDenNo"), u"O2"_s);
}

// A pile of Saturday's slips, entered on Wednesday, and then one of today.
void TestFrmOut::aBackDatedSlipsDateIsSeen()
{
    SalesDesk desk;
    auto *date = &desk.the<QDateEdit>("DTPicker1");
    const QColor usual = date->palette().color(QPalette::Base);
    desk.choose(0);
    QCOMPARE(registers::lastCounterparts(desk.shop.workspace).customer, 5);
    date->setFocus();
    QTest::keyClick(date, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(date, u"2026/3/28"_s);
    QVERIFY(date->palette().color(QPalette::Base) != usual);
    desk.press("cmdMasterUpdate");
    desk.line(u"２"_s, u"500"_s);
    desk.press("cmdNext");
    QCOMPARE(date->date(), QDate(2026, 3, 28));
    QVERIFY(date->palette().color(QPalette::Base) != usual);
    QCOMPARE(desk.the<QLabel>("lblMessage").text(),
             u"伝票 O1 を保存しました。　合計 1,000 円　消費税 50 円"
             "　日付は 2026/03/28 のままです（今日ではありません）。"_s);
    date->setDate(QDate(2026, 4, 1));
    QCOMPARE(date->palette().color(QPalette::Base), usual);
}

void TestFrmOut::worksByKeyboardAlone()
{
    SalesDesk desk;
    QVERIFY(desk.hasFocus("txtKey1"));
    // 次の伝票 is switched off as yet; its letter is not typed.
    QKeyEvent command(QEvent::KeyPress, Qt::Key_N, Qt::AltModifier, u"n"_s);
    QApplication::sendEvent(desk.screen().focusWidget(), &command);
    QCOMPARE(desk.text("txtKey1"), QString());
    desk.type(u"ＫＹＡＫＵ０"_s);
    QVERIFY(desk.hasFocus("DTPicker1"));
    desk.type({});
    desk.type({});
    for (const QString &quantity : {u"１０"_s, u"3"_s}) {
        QVERIFY(desk.hasFocus("dbcShohin"));
        for (const QString &text : {u"ふじりんご"_s, u"５ｋｇ"_s, quantity, u"箱"_s, u"1,200"_s, QString()})
            desk.type(text);
    }
    QVERIFY(desk.hasFocus("dbcShohin"));
    QCOMPARE(
        desk.shop.rows(u"SELECT ID, 商品名, 規格, 数量, 単位, 単価, 金額 FROM 入出庫サブ"_s),
        QStringList({u"1|ふじりんご|５ｋｇ|10|箱|1200|12000"_s, u"1|ふじりんご|５ｋｇ|3|箱|1200|3600"_s}));
    QTest::keyClick(&desk.screen(), Qt::Key_N, Qt::AltModifier);
    QTRY_COMPARE(desk.usable(), headerOnly);
    QVERIFY(desk.hasFocus("txtKey1"));
}

void TestFrmOut::enterTakesTheMarkedName()
{
    SalesDesk desk;
    desk.open(0);
    auto *product = &desk.the<QComboBox>("dbcShohin");
    QInputMethodEvent typed;
    typed.setCommitString(u"フラ"_s);
    QApplication::sendEvent(product, &typed);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QTest::qWait(20);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
    QTRY_VERIFY(desk.hasFocus("dbcKikaku"));
    QCOMPARE(product->currentText(), u"ラ・フランス"_s);
}

void TestFrmOut::taxOfClassAndBox_data()
{
    QTest::addColumn<int>("taxClass"); // 3: the customer has none
    QTest::addColumn<bool>("toggle");  // the clerk changes 内税
    QTest::addColumn<bool>("ticked");  // when the slip opens
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("taxLine");
    QTest::addColumn<QString>("named"); // the total, and what the paper says
    const QString added = u"合計（税抜）|外税の消費税です（合計に加わります）|11,025 円（税込）"_s;
    const QString included = u"合計（税込）|内税：端数処理前の額です（用紙では 500 円）|10,500 円（税込）"_s;
    const QString billed = u"合計（税別）|消費税は請求時に計算します|10,500 円（税別）"_s;
    QTest::newRow("on delivery") << 0 << false << false << u"525"_s << true << added;
    QTest::newRow("on delivery, ticked by hand") << 0 << true << false << u"500"_s << false << included;
    QTest::newRow("on bill") << 1 << false << false << QString() << false << billed;
    QTest::newRow("included") << 2 << false << true << u"500"_s << false << included;
    QTest::newRow("included, made exclusive") << 2 << true << true << QString() << true << added;
    QTest::newRow("class left empty") << 3 << false << false << u"525"_s << true << added;
}

void TestFrmOut::taxOfClassAndBox()
{
    QFETCH(int, taxClass);
    QFETCH(bool, toggle);
    QFETCH(bool, ticked);
    QFETCH(QString, shown);
    QFETCH(bool, taxLine);
    SalesDesk desk;
    desk.open(taxClass);
    QCOMPARE(desk.text("txtTaxK"), taxClass == 3 ? u"0"_s : QString::number(taxClass));
    auto *inclusive = &desk.the<QCheckBox>("Check1");
    QCOMPARE(inclusive->isChecked(), ticked);
    desk.line(u"1"_s, u"10500"_s);
    if (toggle)
        inclusive->click();
    // On the slip at once: a program that is killed now leaves it to be taxed by that.
    const auto kept = [&] { return desk.shop.value(u"SELECT 内税 FROM 入出庫マスター"_s); };
    QCOMPARE(kept(), QVariant(inclusive->isChecked() ? 1 : 0));
    QCOMPARE(desk.text("Text2"), shown);
    QTEST(desk.the<QLabel>("lblTotal").text() + u'|' + desk.the<QLabel>("lblTaxWords").text() + u'|' +
              desk.text("txtWithTax"),
          "named");
    QCOMPARE(desk.the<QLabel>("lblMessage").text().contains(u"消費税 525 円"_s), taxLine && shown.isEmpty());
    desk.press("cmdNext");
    QCOMPARE(kept(), QVariant(ticked != toggle ? 1 : 0));
    QCOMPARE(desk.shortLines().size(), taxLine ? 2 : 1);
    if (taxLine)
        QCOMPARE(desk.shortLines().last(), u"1|消費税|-|-|525"_s);
}

void TestFrmOut::rateIsReadAgainAtTheEnd()
{
    SalesDesk desk;
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    desk.shop.workspace.panel.taxRate = 8;
    desk.press("cmdNext");
    QCOMPARE(desk.shop.value(u"SELECT 消費税率 FROM 入出庫マスター"_s).toDouble(), 5.0);
    QCOMPARE(desk.shortLines().last(), u"1|消費税|-|-|80"_s);
}

// A slip entered late is taxed by its own day; the panel's rate, kept by hand, means nothing then.
void TestFrmOut::ratesOfTheTableGoByTheDate_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("header"); // percent
    QTest::addColumn<QString>("tax");

    QTest::newRow("the last day at 8") << u"2019/9/30"_s << u"8"_s << u"987"_s;
    QTest::newRow("the first day at 10") << u"2019/10/1"_s << u"10"_s << u"1234"_s;
    QTest::newRow("today") << u"2026/4/1"_s << u"10"_s << u"1234"_s;
    QTest::newRow("before there was the tax") << u"1989/3/31"_s << u"0"_s << QString();
}

void TestFrmOut::ratesOfTheTableGoByTheDate()
{
    QFETCH(QString, date);
    QFETCH(QString, tax);
    SalesDesk desk;
    desk.shop.workspace.panel.followsTaxTable = true;
    auto *box = &desk.the<QDateEdit>("DTPicker1");
    desk.choose(0);
    box->setFocus();
    QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(box, date);
    desk.press("cmdMasterUpdate");
    desk.line(u"1"_s, u"12,345"_s);
    desk.press("cmdNext");
    QTEST(desk.shop.value(u"SELECT 消費税率 FROM 入出庫マスター"_s).toString(), "header");
    QCOMPARE(desk.shop.value(u"SELECT 金額 FROM 入出庫サブ WHERE 商品名 = '消費税'"_s).toString(), tax);
}

void TestFrmOut::noSlipWithoutItsRate()
{
    SalesDesk desk;
    desk.shop.workspace.panel.followsTaxTable = true;
    desk.shop.run(u"DELETE FROM 税率 WHERE 税率ID = 4"_s);
    desk.choose(0);
    ui::prompts::expectInform(u"「消費税率表」に、2026/04/01 の標準の税率がありません。\n"
                              "「初期設定」の「消費税率表」で登録してください。"_s);
    desk.press("cmdMasterUpdate");
    QCOMPARE(desk.shop.value(u"SELECT count(*) FROM 入出庫マスター"_s).toInt(), 0);
}

void TestFrmOut::searchTellsWhatIsMissing()
{
    SalesDesk desk;
    ui::prompts::expectInform(u"検索する条件を入力してください。"_s);
    desk.press("Command1");
    desk.box("txtKey1").setText(u"kyaku"_s);
    desk.press("Command1");
    QCOMPARE(desk.the<QTableView>("DataGrid1").model()->rowCount(), 4);
    QCOMPARE(desk.text("Text1"), u"5"_s); // the one served last
    desk.the<QTableView>("DataGrid1").selectRow(2);
    QCOMPARE(desk.text("Text1"), u"7"_s);

    int opened = 0;
    desk.screen().setCounterpartEditor([&](QWidget *) { return ++opened, 0; });
    desk.box("txtKey1").setText(u"いない"_s);
    for (const bool yes : {false, true}) {
        ui::prompts::expectAsk(u"検索した納品先は見つかりませんでした。\n新規に入力しますか？"_s, yes);
        desk.press("Command1");
        QCOMPARE(opened, yes ? 1 : 0);
    }
    QCOMPARE(desk.text("Text1"), QString());
}

void TestFrmOut::newCustomerIsChosen()
{
    SalesDesk desk;
    // The register's own screen starts a new customer, which is given up.
    QString opened;
    QTimer::singleShot(50, &desk.screen(), [&] {
        QWidget *editor = QApplication::activeModalWidget();
        opened = editor->objectName() + u' ' + editor->findChild<QLineEdit *>(u"txtID"_s)->text();
        editor->close();
    });
    desk.press("Command4");
    QCOMPARE(opened, u"frmNouhin 9"_s);
    QCOMPARE(desk.text("Text1"), QString());

    desk.screen().setCounterpartEditor([&](QWidget *) {
        desk.shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1) VALUES (20, '新規商店')"_s);
        return 20;
    });
    desk.press("Command4");
    QCOMPARE(desk.text("txtNouhinsaki1"), u"新規商店"_s);
    desk.press("cmdMasterUpdate");
    QCOMPARE(desk.shop.value(u"SELECT 相手先ID FROM 入出庫マスター"_s).toInt(), 20);
}

void TestFrmOut::lastLineIsRemoved()
{
    SalesDesk desk;
    desk.open(0);
    desk.press("cmdSubCancel");
    desk.line(u"1"_s, u"1000"_s);
    desk.line(u"1"_s, u"2000"_s);
    desk.press("cmdSubCancel");
    QCOMPARE(desk.shortLines(), QStringList{u"1|ふじりんご|1|1000|1000"_s});
    QCOMPARE(desk.the<QTableView>("dgdSub").model()->rowCount(), 1);
    QCOMPARE(desk.text("txtTotal"), u"1,000"_s);
    QCOMPARE(desk.text("Text2"), u"50"_s);
}

void TestFrmOut::cancellingDeletesTheSlip()
{
    SalesDesk desk;
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    const QString question = u"表示中のレコードを削除します。よろしいですか。"_s;
    ui::prompts::expectAsk(question, false);
    desk.press("cmdMasterCancel");
    QCOMPARE(desk.usable(), withLines);
    ui::prompts::expectAsk(question, true);
    desk.press("cmdMasterCancel");
    QCOMPARE(desk.usable(), headerOnly);
    QCOMPARE(desk.headers().size(), 0);
    QCOMPARE(desk.shortLines(), QStringList());
}

void TestFrmOut::printingShowsTheNote()
{
    SalesDesk desk;
    ui::file_dialogs::beginScript();
    desk.open(0);
    desk.line(u"1"_s, u"1999"_s);
    const QString fileName = desk.shop.path(u"note.pdf"_s);
    ui::file_dialogs::expectFile(fileName);
    QString title;
    // The preview is modal: it is worked from the event loop that it runs.
    QTimer::singleShot(0, &desk.screen(), [&title] {
        auto *preview = qobject_cast<printing::frmPreview *>(QApplication::activeModalWidget());
        if (!preview)
            return;
        title = preview->windowTitle();
        preview->findChild<QPushButton *>(u"cmdPdf"_s)->click();
        preview->reject();
    });
    desk.press("Command3");
    QCOMPARE(title, u"印刷プレビュー　納品書 O1"_s);
    QVERIFY(QFile::exists(fileName));
    QCOMPARE(ui::file_dialogs::takeUnexpected(), QString());
    QCOMPARE(desk.shortLines().size(), 1); // the tax line waits for 次の伝票
}

void TestFrmOut::previousLinesAreShown()
{
    SalesDesk desk;
    desk.open(0);
    desk.line(u"2.5"_s, u"1000"_s);
    desk.press("cmdNext");
    desk.open(0);
    const QAbstractItemModel *previous = desk.the<QTableView>("MSFlexGrid1").model();
    QStringList headings;
    QStringList cells;
    for (int column = 0; column < previous->columnCount(); ++column) {
        headings << previous->headerData(column, Qt::Horizontal).toString();
        cells << previous->index(0, column).data().toString();
    }
    QCOMPARE(headings.join(u'\t'), u"伝票番号\t日付\t商品名\t規格\t数量\t\t単価\t金額"_s);
    QCOMPARE(cells, QStringList({u"O1"_s, u"2026/04/01"_s, u"ふじりんご"_s, QString(), u"2.50"_s, QString(),
                                 u"1,000"_s, u"2,500"_s}));
    QCOMPARE(previous->rowCount(), 1); // without the tax line
}

QTEST_MAIN(TestFrmOut)
#include "tst_frmout.moc"

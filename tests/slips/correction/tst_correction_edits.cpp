#include "slips/correction/correction_screen_desk.h"

#include "support/scripted_test.h"
#include "ui/prompts.h"

#include <QClipboard>
#include <QComboBox>

using namespace slips;
using Desk = CorrectionDesk;

// What is typed into stored slips and their lines.
class TestCorrectionEdits : public ScriptedTest
{
    Q_OBJECT

private slots:
    void enterStaysInTheGrid()
    {
        Desk desk;
        const QStringList before = desk.shop.book();
        desk.lines().setFocus();
        desk.lines().setCurrentIndex(Desk::cell(desk.lines(), 0, u"商品名"_s));
        for (int presses = 0; presses < 12; ++presses)
            QTest::keyClick(desk.driver.the("dgdSub").window()->focusWidget(), Qt::Key_Return);
        QVERIFY(desk.lines().hasFocus());
        QCOMPARE(desk.lines().currentIndex(), Desk::cell(desk.lines(), 0, u"金額"_s));
        QCOMPARE(desk.shop.book(), before);
    }

    void typingGoesThroughTheRow()
    {
        Desk desk;
        QCOMPARE(desk.driver.cursor(), u"DataGrid1"_s);
        QTest::keyClick(&desk.headers(), Qt::Key_Up); // to O1
        QCOMPARE(desk.driver.box("txtDenNo").text(), u"O1"_s);
        desk.lines().setFocus();
        desk.lines().setCurrentIndex(Desk::cell(desk.lines(), 0, u"数量"_s));
        for (const char key : {'5', '\r', '\r'}) {
            QWidget *target = desk.lines().viewport()->findChild<QLineEdit *>();
            QTest::keyClick(target ? target : &desk.lines(), key == '\r' ? '\r' : key);
        }
        QCOMPARE(Desk::cell(desk.lines(), 0, u"数量"_s).data().toString(), u"5"_s);
        // Enter without an open cell goes on in the row, and presses nothing below it.
        QCOMPARE(desk.driver.cursor(), u"dgdSub"_s);
        QCOMPARE(desk.lines().currentIndex(), Desk::cell(desk.lines(), 0, u"単価"_s));
        expectDoubt(asItIs);
        desk.driver.press("Command3");
    }

    void badInputStaysInItsCell()
    {
        Desk desk;
        ui::prompts::expectInform(u"単価には数字を入力してください。"_s);
        desk.type(desk.lines(), 0, u"単価"_s, u"1e308"_s);
        auto *editor = desk.lines().viewport()->findChild<QLineEdit *>();
        QVERIFY(editor && editor->hasFocus());
        QCOMPARE(editor->text(), u"1e308"_s);
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Down, Qt::Key_PageUp}) {
            ui::prompts::expectInform(u"単価には数字を入力してください。"_s);
            QTest::keyClick(editor, key);
            QTest::qWait(1);
            QCOMPARE(editor->text(), u"1e308"_s);
            QVERIFY(editor->hasFocus());
        }
        QTest::keyClick(editor, Qt::Key_Escape);
        QVERIFY(desk.screen->isVisible());
        QVERIFY(desk.message().isEmpty());
        ui::prompts::expectInform({});
        desk.driver.type("txtDate", u"2026/13/1"_s);
        desk.driver.leave("txtDate");
        QCOMPARE(desk.driver.box("txtDate").text(), u"2026/03/01"_s);
        QTRY_COMPARE(desk.driver.cursor(), u"txtDate"_s);
    }

    void whatIsHalfTypedIsNotPassedOver()
    {
        Desk desk;
        expectDoubt(asItIs);
        QTest::keyClick(desk.typeInto(desk.lines(), 0, u"数量"_s, u"7"_s), Qt::Key_U, Qt::AltModifier);
        QTRY_COMPARE(desk.shop.value(u"SELECT 数量 FROM 入出庫サブ WHERE ID = 9"_s).toInt(), 7);
        desk.driver.type("txtDate", u"2026/5/5"_s);
        QTest::keyClick(&desk.driver.box("txtDate"), Qt::Key_U, Qt::AltModifier);
        QTRY_COMPARE(desk.shop.value(u"SELECT 日付 FROM 入出庫マスター WHERE ID = 9"_s).toString(),
                     u"2026-05-05"_s);
        desk.driver.type("txtDenNo", u"O-9"_s);
        ui::prompts::expectAskToSave({}, ui::prompts::Choice::Cancel);
        QTest::keyClick(&desk.driver.box("txtDenNo"), Qt::Key_Escape);
        QVERIFY(desk.screen->isVisible());
        desk.typeInto(desk.lines(), 0, u"数量"_s, u"8個"_s);
        QWidget calculator; // a look at another window
        for (QWidget *window : {&calculator, static_cast<QWidget *>(desk.screen.get())}) {
            window->show();
            window->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(window));
        }
        ui::prompts::expectInform({});
        desk.screen->close(); // refused, and the cell is still open
        QTest::qWait(1);
        QVERIFY(desk.screen->isVisible());
        desk.lines().viewport()->findChild<QLineEdit *>()->setText(u"8"_s);
        expectDoubt(asItIs);
        desk.screen->close();
        QCOMPARE(desk.shop
                     .rows(u"SELECT 伝票番号, 数量 FROM 入出庫マスター, 入出庫サブ WHERE "
                           "入出庫サブ.ID = 9 AND 入出庫マスター.ID = 9"_s)
                     .front(),
                 u"O-9|8"_s);
    }

    void aLockedFileCostsNothingTyped()
    {
        Desk desk;
        auto &key = desk.driver.list("dbcNouhin");
        ui::prompts::expectInform(u"複数の入金先が選択されています。"_s);
        key.setEditText(u"key"_s);
        desk.driver.press("Command1");
        ui::prompts::expectInform(u"現在、該当する伝票はありません。"_s);
        key.setEditText(u"客3"_s);
        desk.driver.press("Command1"); // the slips of before stay
        desk.type(desk.lines(), 0, u"数量"_s, u"7"_s);
        desk.type(desk.headers(), 1, u"備考"_s, u"至急"_s);
        desk.shop.run(u"PRAGMA busy_timeout = 0"_s);
        db::Connection other;
        QVERIFY(other.open(desk.shop.connection.fileName()));
        QVERIFY(other.execute(u"BEGIN EXCLUSIVE"_s));
        for (const char *button :
             {"Command3", "cmdMasterCancel", "cmdLineAdd", "cmdLineDelete", "cmdAll", "Command2"}) {
            if (QLatin1StringView(button) == "cmdMasterCancel"_L1 ||
                QLatin1StringView(button) == "cmdLineDelete"_L1)
                ui::prompts::expectAsk({}, true);
            ui::prompts::expectInform({});
            desk.driver.press(button);
            QTest::qWait(1);
            QCOMPARE(Desk::cell(desk.lines(), 0, u"数量"_s).data().toString(), u"7"_s);
            QCOMPARE(Desk::cell(desk.headers(), 1, u"備考"_s).data().toString(), u"至急"_s);
        }
        QVERIFY(other.execute(u"ROLLBACK"_s));
        expectDoubt(asItIs);
        desk.driver.press("Command3");
        QCOMPARE(desk.shop
                     .rows(u"SELECT 数量, 備考 FROM 入出庫サブ, 入出庫マスター WHERE "
                           "入出庫サブ.ID = 9 AND 入出庫マスター.ID = 9"_s)
                     .front(),
                 u"7|至急"_s);
    }

    void linesComeAndGo()
    {
        Desk desk;
        desk.lines().setFocus();
        QTest::keyClick(&desk.lines(), Qt::Key_Insert);
        desk.type(desk.lines(), 2, u"商品名"_s, u"みかん"_s);
        desk.type(desk.lines(), 2, u"金額"_s, u"500"_s);
        expectDoubt(asItIs);
        desk.driver.press("Command3");
        QCOMPARE(desk.lines().currentIndex().row(), 2);
        QCOMPARE(
            desk.shop.rows(u"SELECT ID, 商品名, 規格, 数量, 単位, 単価, 金額 FROM 入出庫サブ WHERE ID = 9"_s)
                .last(),
            u"9|みかん||0||0|500"_s);
        ui::prompts::expectAskCautiously(u"この明細を削除します。よろしいですか。"_s, true,
                                         u"りんご 箱　数量 2 個　金額 2,000 円"_s);
        desk.lines().setFocus();
        desk.lines().setCurrentIndex(Desk::cell(desk.lines(), 0, u"商品名"_s));
        QTest::keyClick(&desk.lines(), Qt::Key_Delete);
        QCOMPARE(desk.shop.rows(u"SELECT 商品名 FROM 入出庫サブ WHERE ID = 9"_s),
                 (QStringList{u"消費税"_s, u"みかん"_s}));
    }

    // As a spreadsheet copies cells: into the row from the current cell on, and not at all where they do not
    // fit.
    void cellsArePasted_data()
    {
        QTest::addColumn<QString>("heading");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("row"); // empty: as it was, and told why
        QTest::newRow("one") << u"数量"_s << u"３"_s << u"りんご|箱|3|個|1,000|2,000"_s;
        QTest::newRow("several") << u"商品名"_s << u"みかん\t大\t1,200\r\n"_s
                                 << u"みかん|大|1,200|個|1,000|2,000"_s;
        QTest::newRow("to the last") << u"数量"_s << u"3\t袋\t500\t1500"_s << u"りんご|箱|3|袋|500|1,500"_s;
        QTest::newRow("an empty one") << u"規格"_s << u"\t4"_s << u"りんご||4|個|1,000|2,000"_s;
        QTest::newRow("no number") << u"商品名"_s << u"みかん\t大\t三個"_s << QString();
        QTest::newRow("too many columns") << u"単価"_s << u"1\t2\t3"_s << QString();
        QTest::newRow("several rows") << u"数量"_s << u"1\n2"_s << QString();
    }
    void cellsArePasted()
    {
        QFETCH(QString, heading);
        QFETCH(QString, text);
        QFETCH(QString, row);
        Desk desk;
        const QStringList before = desk.shop.book();
        const auto shown = [&] {
            QStringList cells;
            for (const QString &each : {u"商品名"_s, u"規格"_s, u"数量"_s, u"単位"_s, u"単価"_s, u"金額"_s})
                cells << Desk::cell(desk.lines(), 0, each).data().toString();
            return cells.join(u'|');
        };
        const QString asItWas = shown();
        QGuiApplication::clipboard()->setText(text);
        desk.lines().setFocus();
        desk.lines().setCurrentIndex(Desk::cell(desk.lines(), 0, heading));
        if (row.isEmpty())
            ui::prompts::expectInform({});
        QTest::keyClick(&desk.lines(), Qt::Key_V, Qt::ControlModifier);
        QTest::qWait(1);
        QCOMPARE(shown(), row.isEmpty() ? asItWas : row);
        QCOMPARE(desk.driver.the("cmdUndo").isEnabled(), !row.isEmpty());
        if (!row.isEmpty())
            desk.driver.press("cmdUndo");
        QCOMPARE(shown(), asItWas);
        QCOMPARE(desk.shop.book(), before);
    }

    void escInACellTakesBackNothingElse()
    {
        Desk desk;
        desk.type(desk.headers(), 1, u"備考"_s, u"至急"_s);
        QTest::keyClick(desk.typeInto(desk.headers(), 1, u"摘要"_s, u"x"_s), Qt::Key_Escape);
        QCOMPARE(Desk::cell(desk.headers(), 1, u"備考"_s).data().toString(), u"至急"_s);
        QCOMPARE(Desk::cell(desk.headers(), 1, u"摘要"_s).data().toString(), QString());
        desk.driver.press("cmdLineAdd");
        desk.type(desk.lines(), 2, u"商品名"_s, u"みかん"_s);
        QTest::keyClick(desk.typeInto(desk.lines(), 2, u"金額"_s, u"5"_s), Qt::Key_Escape);
        QCOMPARE(desk.lines().model()->rowCount(), 3);
        QCOMPARE(Desk::cell(desk.lines(), 2, u"商品名"_s).data().toString(), u"みかん"_s);
    }

    void allEditsCanBeTakenBack()
    {
        Desk desk;
        const QStringList before = desk.shop.book();
        QVERIFY(!desk.driver.the("cmdUndo").isEnabled());
        desk.type(desk.headers(), 1, u"納品先"_s, u"key1"_s);
        desk.type(desk.lines(), 0, u"数量"_s, u"3"_s);
        desk.typeInto(desk.lines(), 0, u"単価"_s, u"x"_s); // still open
        QTest::keyClick(desk.screen.get(), Qt::Key_B, Qt::AltModifier);
        QTRY_VERIFY(desk.message().isEmpty());
        QCOMPARE(desk.driver.box("txtNouhinsaki1").text(), u"客2"_s);
        QCOMPARE(Desk::cell(desk.lines(), 0, u"数量"_s).data().toString(), u"2"_s);
        QVERIFY(!desk.driver.the("cmdUndo").isEnabled());
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.shop.book(), before);
    }
};

QTEST_MAIN(TestCorrectionEdits)
#include "tst_correction_edits.moc"

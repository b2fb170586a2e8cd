#include "slips/correction/correction_screen_desk.h"

#include "printing/frmPreview.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QComboBox>
#include <QFileInfo>
#include <QTimer>

using namespace slips;
using Desk = CorrectionDesk;

// Which slips the correction screens show, whose they are, and what others do to them.
class TestFrmOutAmd : public ScriptedTest
{
    Q_OBJECT

private slots:
    void everyKindHasItsScreen()
    {
        const std::vector<std::tuple<book::SlipKind, QString, QString, QStringList>> expected{
            {book::sale, u"frmOutAmd"_s, u"納品伝票訂正（再発行）"_s, {u"O1"_s, u"O9"_s}},
            {book::receipt, u"frmOutAmd"_s, u"入金伝票訂正"_s, {u"R2"_s}},
            {book::receivableCarried, u"frmOutAmd"_s, u"繰越伝票 (売掛金)訂正"_s, {u"B3"_s}},
            {book::estimate, u"frmMitumoriAmd"_s, u"見積書訂正"_s, {u"M4"_s}},
            {book::purchase, u"frmInAmd"_s, u"仕入伝票訂正"_s, {u"I5"_s}},
            {book::payment, u"frmInAmd"_s, u"支払伝票訂正"_s, {u"P6"_s}},
            {book::payableCarried, u"frmInAmd"_s, u"繰越伝票 (買掛金)訂正"_s, {u"A7"_s}},
            {book::stocktake, u"frmInAmd"_s, u"棚卸伝票訂正"_s, {u"T8"_s}},
        };
        for (const auto &[kind, name, title, numbers] : expected) {
            Desk desk(kind);
            QCOMPARE(desk.screen->objectName(), name);
            QCOMPARE(desk.screen->windowTitle(), title);
            QCOMPARE(desk.numbers(), numbers);
            QCOMPARE(desk.driver.box("txtDenNo").text(), numbers.last()); // the newest slip is shown
            QCOMPARE(desk.driver.the("Command2").isVisible(), kind == book::sale || kind == book::estimate);
            QCOMPARE(desk.driver.the("Check2").isVisible(), kind == book::sale);
            QCOMPARE(desk.driver.the("txtAddress1").isVisible(), kind.party == book::Party::Customer);
            QCOMPARE(desk.lines().isColumnHidden(Desk::cell(desk.lines(), 0, u"単価"_s).column()),
                     kind.sign == -1 || kind == book::receivableCarried || kind == book::payableCarried);
        }
    }

    void headerFields()
    {
        Desk desk;
        desk.type(desk.headers(), 1, u"日付"_s, u"20260331"_s);
        QCOMPARE(desk.driver.box("txtDate").text(), u"2026/03/31"_s);
        desk.type(desk.headers(), 1, u"納品先"_s, u"key1"_s);
        QCOMPARE(desk.driver.box("txtNouhinsaki1").text(), u"客1"_s);
        QCOMPARE(desk.driver.box("Text2").text(), u"1"_s);
        desk.driver.type("txtDenNo", u"O-900"_s);
        desk.driver.leave("txtDenNo");
        desk.driver.list("dbcShain").setFocus();
        QTest::keyClick(&desk.driver.list("dbcShain"), Qt::Key_Down);
        desk.driver.press("Command3");
        QCOMPARE(
            desk.shop.rows(
                u"SELECT ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 備考 FROM 入出庫マスター WHERE ID = 9"_s),
            QStringList{u"9|2026-03-31|O-900|1|2|5|-"_s});
        // A number of another slip's is refused when it is saved, and stays to be mended.
        desk.type(desk.headers(), 1, u"伝票番号"_s, u"O1"_s);
        ui::prompts::expectInform(u"伝票番号が重複しています。"_s);
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 0, u"伝票番号"_s));
        QTest::qWait(1);
        QCOMPARE(desk.driver.box("txtDenNo").text(), u"O1"_s);
        QCOMPARE(desk.headers().currentIndex().row(), 1);
        ui::prompts::expectAskToSave({}, ui::prompts::Choice::Discard);
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.shop.value(u"SELECT 伝票番号 FROM 入出庫マスター WHERE ID = 9"_s).toString(),
                 u"O-900"_s);
    }

    void datesBeyondAllEntryStay_data()
    {
        QTest::addColumn<QString>("date");
        for (const char *date : {"3050-04-01", "1850-12-31", "9999-12-31", "2026-02-31", "abc", ""})
            QTest::newRow(date) << QString::fromLatin1(date);
    }

    void datesBeyondAllEntryStay()
    {
        QFETCH(QString, date);
        Desk desk;
        desk.shop.run(u"UPDATE 入出庫マスター SET 日付 = ? WHERE ID = 9"_s, {date});
        desk.driver.press("cmdAll");
        desk.driver.the("txtDate").setFocus();
        desk.driver.leave("txtDate");
        desk.headers().setFocus();
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 1, u"日付"_s));
        QTest::keyClick(&desk.headers(), Qt::Key_F2); // opened, and left as it is
        QTest::keyClick(desk.headers().viewport()->findChild<QLineEdit *>(), Qt::Key_Return);
        QTest::qWait(1);
        desk.type(desk.headers(), 1, u"備考"_s, u"至急"_s);
        desk.type(desk.lines(), 0, u"規格"_s, u"大"_s);
        desk.driver.press("Command3");
        QCOMPARE(desk.shop.rows(u"SELECT 日付, 備考 FROM 入出庫マスター WHERE ID = 9"_s),
                 QStringList{date + u"|至急"_s});
    }

    void narrowing()
    {
        Desk desk;
        auto &key = desk.driver.list("dbcNouhin");
        QCOMPARE(key.toolTip(), u"検索する納品先名の文字列を入力してください。"_s);
        const auto searchFor = [&](const QString &text) {
            key.setEditText(text);
            key.setFocus();
            QTest::keyClick(&key, Qt::Key_Return); // as Command1
        };
        ui::prompts::expectInform(ui::messages::searchEmpty());
        searchFor({});
        ui::prompts::expectInform(ui::messages::nothingFound());
        searchFor(u"いない"_s);
        ui::prompts::expectInform(u"複数の入金先が選択されています。"_s);
        searchFor(u"key"_s);
        QCOMPARE(desk.numbers(), (QStringList{u"O1"_s, u"O9"_s}));
        QCOMPARE(key.count(), 3); // to choose from
        QTest::keyClick(&key, Qt::Key_Down);
        QCOMPARE(key.currentIndex(), 0);
        searchFor(u"客2"_s);
        QCOMPARE(desk.numbers(), QStringList{u"O9"_s});
        ui::prompts::expectInform(u"現在、該当する伝票はありません。"_s);
        searchFor(u"客3"_s);
        QCOMPARE(desk.numbers(), QStringList{u"O9"_s});
        desk.driver.press("cmdAll");
        QCOMPARE(desk.numbers(), (QStringList{u"O1"_s, u"O9"_s}));
        searchFor(u"key1"_s); // only one has it
        QCOMPARE(desk.numbers(), QStringList{u"O1"_s});
        // Those whom no register has are found by what lists call them.
        desk.shop.addSlip(10, u"O10"_s, 77);
        desk.shop.addSlip(11, u"O11"_s, 78);
        desk.shop.run(u"UPDATE 入出庫マスター SET 相手先ID = NULL WHERE ID = 11"_s);
        for (const QString &text : {u"77"_s, u"ＩＤ　７７"_s, u"(削除済み) ID 77"_s}) {
            desk.driver.press("cmdAll");
            searchFor(text);
            QCOMPARE(desk.numbers(), QStringList{u"O10"_s});
            QCOMPARE(desk.driver.box("txtNouhinsaki1").text(), u"(削除済み) ID 77"_s);
        }
        searchFor(u"(相手先なし)"_s);
        QCOMPARE(desk.numbers(), QStringList{u"O11"_s});
        QCOMPARE(desk.driver.box("txtNouhinsaki1").text(), u"(相手先なし)"_s);
        desk.shop.run(u"UPDATE 入出庫マスター SET 相手先ID = 0 WHERE ID = 11"_s);
        desk.driver.press("cmdAll"); // as older programs write none
        QCOMPARE(desk.driver.box("txtDenNo").text(), u"O11"_s);
        QCOMPARE(desk.driver.box("txtNouhinsaki1").text(), u"(相手先なし)"_s);
        QCOMPARE(Desk::cell(desk.headers(), 3, u"納品先"_s).data().toString(), u"(相手先なし)"_s);
        ui::prompts::expectInform(u"現在、該当する伝票はありません。"_s);
        searchFor(u"ID 79"_s);
    }

    void deletingToTheLast()
    {
        Desk desk;
        const QString what =
            u"伝票 %1　2026/03/01\n納品先「%2」\n明細 2 行　合計 2,100 円（うち消費税 100 円）"_s;
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), false, what.arg(u"O9"_s, u"客2"_s));
        desk.driver.press("cmdMasterCancel");
        QCOMPARE(desk.numbers().size(), 2);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true, what.arg(u"O9"_s, u"客2"_s));
        desk.driver.press("cmdMasterCancel");
        QCOMPARE(desk.driver.box("txtDenNo").text(), u"O1"_s);
        QCOMPARE(desk.lines().model()->rowCount(), 2);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true, what.arg(u"O1"_s, u"客1"_s));
        desk.driver.press("cmdMasterCancel");
        QCOMPARE(desk.numbers(), QStringList());
        QCOMPARE(desk.lines().model()->rowCount(), 0);
        QCOMPARE(desk.driver.enabled({"Command1", "cmdAll", "Command3", "cmdMasterCancel", "cmdLineAdd"}),
                 u"Command1 cmdAll"_s);
        desk.driver.press("cmdAll");
        QCOMPARE(desk.shop.book().size(), 7 * 3);
        QCOMPARE(desk.shop.rows(u"SELECT ID FROM 入出庫サブ WHERE ID IN (1, 9)"_s), QStringList());
    }

    void deletedElsewhere()
    {
        Desk desk;
        desk.type(desk.lines(), 0, u"規格"_s, u"大"_s);
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE ID = 9"_s);
        desk.shop.run(u"DELETE FROM 入出庫マスター WHERE ID = 9"_s);
        ui::prompts::expectInform({});
        desk.driver.press("Command3");
        QTest::qWait(1);
        QCOMPARE(desk.numbers(), QStringList{u"O1"_s});
        QCOMPARE(desk.driver.box("txtDenNo").text(), u"O1"_s);
        QCOMPARE(desk.lines().model()->rowCount(), 2);
        ui::prompts::expectInform({});
        QVERIFY(!desk.screen->openSlip(9));
        QVERIFY(desk.screen->openSlip(1));
    }

    void anotherProgramChangesTheSlip_data()
    {
        QTest::addColumn<QString>("change");
        QTest::newRow("the line")
            << u"UPDATE 入出庫サブ SET 単位 = '袋' WHERE ID = 9 AND 商品名 = 'りんご'"_s;
        QTest::newRow("a column that is not shown")
            << u"UPDATE 入出庫サブ SET 税区分 = 1, 版 = 99 WHERE ID = 9"_s;
        QTest::newRow("the header") << u"UPDATE 入出庫マスター SET 備考 = '至急' WHERE ID = 9"_s;
    }

    void anotherProgramChangesTheSlip()
    {
        QFETCH(QString, change);
        Desk desk;
        db::Connection other;
        QVERIFY(other.open(desk.shop.path(u"shop.cdb"_s)));
        desk.type(desk.lines(), 0, u"規格"_s, u"大"_s);
        QVERIFY(other.execute(change));
        const QStringList theirs = desk.shop.book();
        ui::prompts::expectAskWhichVersion({}, ui::prompts::Version::Undecided);
        desk.driver.press("Command3");
        QTest::qWait(1);
        QCOMPARE(desk.shop.book(), theirs);
        QCOMPARE(Desk::cell(desk.lines(), 0, u"規格"_s).data().toString(), u"大"_s);
        ui::prompts::expectAskWhichVersion({}, ui::prompts::Version::Mine);
        desk.driver.press("Command3");
        QStringList both = theirs;
        both.replaceInStrings(u"9|りんご|箱|2|"_s, u"9|りんご|大|2|"_s);
        QCOMPARE(desk.shop.book(), both);
        // And the other way round.
        desk.type(desk.lines(), 0, u"規格"_s, u"中"_s);
        QVERIFY(other.execute(u"UPDATE 入出庫サブ SET 金額 = 1 WHERE ID = 9"_s));
        ui::prompts::expectAskWhichVersion({}, ui::prompts::Version::Theirs);
        desk.driver.press("Command3");
        QCOMPARE(
            desk.shop.value(u"SELECT 規格 FROM 入出庫サブ WHERE ID = 9 AND 商品名 = 'りんご'"_s).toString(),
            u"大"_s);
        QCOMPARE(Desk::cell(desk.lines(), 0, u"金額"_s).data().toString(), u"1"_s);
    }

    void deletedCounterpart()
    {
        Desk desk;
        desk.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 1"_s);
        QVERIFY(desk.screen->openSlip(1));
        QCOMPARE(desk.driver.box("txtNouhinsaki1").text(), u"(削除済み) ID 1"_s);
        desk.type(desk.headers(), 0, u"備考"_s, u"転居"_s);
        desk.driver.press("Command3");
        QCOMPARE(desk.shop.value(u"SELECT 相手先ID FROM 入出庫マスター WHERE 備考 = '転居'"_s).toInt(), 1);
    }

    void reprintSavesFirst()
    {
        Desk desk;
        desk.type(desk.lines(), 0, u"商品名"_s, u"みかん"_s);
        QString title;
        QTimer::singleShot(0, desk.screen.get(), [&title] {
            if (auto *preview = qobject_cast<printing::frmPreview *>(QApplication::activeModalWidget())) {
                title = preview->windowTitle();
                preview->reject();
            }
        });
        desk.driver.press("Command2");
        QCOMPARE(title, u"印刷プレビュー　納品書 O9"_s);
        QCOMPARE(desk.shop.value(u"SELECT 商品名 FROM 入出庫サブ WHERE ID = 9"_s).toString(), u"みかん"_s);
    }

    void aSlipIsNotPrintedWithoutItsTaxUnasked()
    {
        Desk desk;
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE 商品名 = '消費税'"_s);
        desk.shop.run(u"UPDATE 入出庫マスター SET 完了 = 0 WHERE ID = 9"_s);
        desk.driver.press("cmdAll");
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 0, u"備考"_s));
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 1, u"備考"_s));
        const auto lines = [&] {
            return desk.shop.value(u"SELECT count(*) FROM 入出庫サブ WHERE ID = 9"_s).toInt();
        };
        ui::prompts::expectAskHowToLeave({}, ui::prompts::Choice::Cancel, ui::prompts::Choice::Cancel);
        desk.driver.press("Command2"); // no preview comes
        QCOMPARE(lines(), 1);

        int previews = 0;
        const auto closePreview = [&previews] {
            QTimer::singleShot(0, qApp, [&previews] {
                auto *preview = qobject_cast<printing::frmPreview *>(QApplication::activeModalWidget());
                previews += preview ? 1 : 0;
                if (preview)
                    preview->reject();
            });
        };
        ui::prompts::expectAskHowToLeave({}, ui::prompts::Choice::Discard, ui::prompts::Choice::Cancel);
        closePreview();
        desk.driver.press("Command2");
        QCOMPARE(lines(), 1);
        ui::prompts::expectAskHowToLeave({}, ui::prompts::Choice::Save, ui::prompts::Choice::Cancel);
        closePreview();
        desk.driver.press("Command2");
        QCOMPARE(lines(), 2);
        QCOMPARE(previews, 2);
    }

    // What the paper would say is asked about, whoever wrote it so and however long ago.
    void figuresThatDisagreeAreNotPrintedUnasked()
    {
        const QString question = u"金額または消費税が、明細と合っていません。計算し直して印刷しますか。"_s;
        for (const QString &way : {QString(), u"このまま印刷"_s, u"計算し直して印刷"_s}) {
            Desk desk;
            desk.shop.run(u"UPDATE 入出庫サブ SET 金額 = 2500 WHERE ID = 9 AND 商品名 = 'りんご'"_s);
            desk.driver.press("cmdAll");
            int previews = 0;
            const QObject scope; // where nothing is shown, the timer goes with it
            const auto print = [&] {
                QTimer::singleShot(0, &scope, [&previews] {
                    auto *preview = qobject_cast<printing::frmPreview *>(QApplication::activeModalWidget());
                    previews += preview ? 1 : 0;
                    if (preview)
                        preview->reject();
                });
                desk.driver.press("Command2");
            };
            ui::prompts::expectAskWhichWay(
                question, way,
                u"「りんご」の数量×単価は 2,000 円ですが、金額は 2,500 円です。\n"
                "消費税の行は 100 円ですが、いまの明細（2,500 円、税率 5 %）では 125 円になります。\n"
                "計算し直すと、合計 2,100 円（うち消費税 100 円）になります。"_s);
            print();
            QCOMPARE(previews, way.isEmpty() ? 0 : 1);
            if (!way.isEmpty())
                print(); // not asked again
            QCOMPARE(desk.shop.value(u"SELECT SUM(金額) FROM 入出庫サブ WHERE ID = 9"_s).toInt(),
                     way.startsWith(u"計算"_s) ? 2100 : 2600);
        }
    }

    void aMissingTaxIsAskedAboutOnce()
    {
        Desk desk;
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE ID = 9 AND 商品名 = '消費税'"_s);
        desk.shop.run(u"UPDATE 入出庫マスター SET 完了 = 1, 内税 = 0 WHERE ID = 9"_s);
        desk.driver.press("cmdAll");
        ui::prompts::expectAskWhichWay({}, u"このまま印刷"_s);
        QTimer::singleShot(0, desk.screen.get(), [] { QApplication::activeModalWidget()->close(); });
        desk.driver.press("Command2");
        QCOMPARE(desk.shop.value(u"SELECT COUNT(*) FROM 入出庫サブ WHERE ID = 9"_s).toInt(), 1);
    }

    // Neither is its neighbour, which the screen goes to.
    void aSlipThatIsGoneIsNotPrinted()
    {
        Desk desk;
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE ID = 9"_s);
        desk.shop.run(u"DELETE FROM 入出庫マスター WHERE ID = 9"_s);
        // Nor is it asked about.
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE ID = 1 AND 商品名 = '消費税'"_s);
        desk.shop.run(u"UPDATE 入出庫マスター SET 完了 = 0 WHERE ID = 1"_s);
        bool hasPreview = false;
        QTimer::singleShot(0, desk.screen.get(), [&hasPreview] {
            hasPreview = QApplication::activeModalWidget();
            if (hasPreview)
                QApplication::activeModalWidget()->close();
        });
        ui::prompts::expectInform(u"表示中の伝票はほかのプログラムで削除されたため、印刷しませんでした。"_s);
        desk.driver.press("Command2");
        QTest::qWait(1);
        QVERIFY(!hasPreview);
        QCOMPARE(desk.driver.box("txtDenNo").text(), u"O1"_s);
    }

    void aCorrectionAfterAReprintOffersAnotherPaper()
    {
        Desk desk;
        const auto saveNextPaper = [&](const QString &name) {
            QTimer::singleShot(0, qApp, [file = desk.shop.path(name)] {
                ui::file_dialogs::expectFile(file);
                ScreenDriver(QApplication::activeModalWidget()).press("cmdPdf");
                QApplication::activeModalWidget()->close();
            });
        };
        const QString question = u"伝票 O9 は、印刷した後で変わりました。もう一度印刷しますか。"_s;
        saveNextPaper(u"first.pdf"_s);
        desk.driver.press("Command2");
        desk.type(desk.headers(), 1, u"摘要"_s, u"至急"_s);
        ui::prompts::expectAsk(question, true);
        saveNextPaper(u"second.pdf"_s);
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 0, u"伝票番号"_s));
        QVERIFY(QFileInfo(desk.shop.path(u"second.pdf"_s)).size() > 1000);
        QCOMPARE(desk.driver.box("txtDenNo").text(), u"O1"_s);
        saveNextPaper(u"third.pdf"_s);
        desk.driver.press("Command2");
        desk.driver.press("Command3");
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 1, u"伝票番号"_s)); // nothing changed
        saveNextPaper(u"fourth.pdf"_s);
        desk.driver.press("Command2");
        desk.type(desk.lines(), 0, u"規格"_s, u"大"_s);
        ui::prompts::expectAskToSave({}, ui::prompts::Choice::Save);
        ui::prompts::expectAsk(question, false);
        desk.screen->close();
        QVERIFY(!desk.screen->isVisible());
    }
};

QTEST_MAIN(TestFrmOutAmd)
#include "tst_frmoutamd.moc"

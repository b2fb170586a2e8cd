#include "slips/correction/correction_screen_desk.h"

#include "slips/correction/slip_correction.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"

using namespace slips;
using Desk = CorrectionDesk;

namespace
{

const QString taxRemark =
    u"消費税の行は 100 円ですが、いまの明細（3,000 円、税率 5 %）では 150 円になります。"_s;

} // namespace

// When what is typed into stored slips is kept, and when the clerk is asked first.
class TestCorrectionQuestions : public ScriptedTest
{
    Q_OBJECT

private slots:
    void aQuantityIsStoredAndNothingElse()
    {
        Desk desk;
        QStringList expected = desk.shop.book();
        desk.type(desk.lines(), 0, u"数量"_s, u"３"_s);
        QCOMPARE(desk.shop.book(), expected); // held back
        QVERIFY(desk.message().contains(u"3,000 円"_s));
        QVERIFY(Desk::cell(desk.lines(), 0, u"金額"_s).data(Qt::BackgroundRole).isValid());
        QVERIFY(!Desk::cell(desk.lines(), 1, u"金額"_s).data(Qt::BackgroundRole).isValid());
        expectDoubt(goBack);
        desk.driver.press("Command3");
        QCOMPARE(desk.shop.book(), expected);
        expectDoubt(asItIs);
        desk.driver.press("Command3");
        expected.replaceInStrings(u"9|りんご|箱|2|"_s, u"9|りんご|箱|3|"_s);
        QCOMPARE(desk.shop.book(), expected);
        // With its amount mended the line is right, and the tax line is not any more.
        desk.type(desk.lines(), 0, u"金額"_s, u"3,000"_s);
        QVERIFY(!Desk::cell(desk.lines(), 0, u"金額"_s).data(Qt::BackgroundRole).isValid());
        QVERIFY(desk.message().contains(u"150 円になります"_s));
        expectDoubt(asItIs);
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 0, u"伝票番号"_s)); // leaves the row
        QCOMPARE(desk.shop.value(u"SELECT SUM(金額) FROM 入出庫サブ WHERE ID = 9"_s).toInt(), 3100);
        QCOMPARE(desk.shop.value(u"SELECT SUM(金額) FROM 入出庫サブ WHERE ID = 1"_s).toInt(), 2100);
        QCOMPARE(desk.driver.box("txtDenNo").text(), u"O1"_s);
    }

    void aNewLineIsHeldBack_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("stored");
        const QString goods = u"%1|みかん||0||0|500"_s;
        const QString money = u"%1|みかん||-|-|-|500"_s;
        const QString payment = u"%1|みかん||-||-|500"_s;
        for (int kind = 0; kind < int(std::size(book::allKinds)); ++kind) {
            const book::SlipKind &of = book::allKinds[std::size_t(kind)];
            const bool isMoney =
                !(of == book::sale || of == book::purchase || of == book::estimate || of == book::stocktake);
            QTest::addRow("%c", char(of.letter)) << kind
                                                 << (of == book::payment ? payment
                                                     : isMoney           ? money
                                                                         : goods);
        }
    }

    // Only what was typed into it, and only with 更新, goes into the slip.
    void aNewLineIsHeldBack()
    {
        QFETCH(int, kind);
        QFETCH(QString, stored);
        const book::SlipKind &of = book::allKinds[std::size_t(kind)];
        Desk desk(of);
        const QString name = stored.contains(u"-|-|"_s) || of == book::payment ? u"適用"_s : u"商品名"_s;
        const QStringList before = desk.shop.book();
        desk.type(desk.headers(), int(desk.numbers().size()) - 1, u"備考"_s, u"至急"_s);
        desk.driver.press("cmdLineAdd");
        desk.driver.press("cmdLineAdd");
        QCOMPARE(desk.lines().model()->rowCount(), 3);
        QCOMPARE(desk.lines().currentIndex().row(), 2);
        desk.lines().setCurrentIndex(Desk::cell(desk.lines(), 0, u"金額"_s)); // left empty
        QCOMPARE(desk.lines().model()->rowCount(), 2);
        desk.driver.press("cmdLineAdd");
        desk.driver.press("cmdLineDelete"); // no question for nothing
        QCOMPARE(desk.lines().model()->rowCount(), 2);
        QCOMPARE(desk.shop.book(), before);

        desk.driver.press("cmdLineAdd");
        desk.type(desk.lines(), 2, name, u"みかん"_s);
        desk.type(desk.lines(), 2, u"金額"_s, u"500"_s);
        QCOMPARE(desk.shop.book(), before);
        if (slips::isTaxed(of))
            expectDoubt(asItIs);
        desk.driver.press("Command3");
        const QString id = desk.shop.value(u"SELECT ID FROM 入出庫マスター WHERE 備考 = '至急'"_s).toString();
        QCOMPARE(
            desk.shop.rows(
                u"SELECT ID, 商品名, 規格, 数量, 単位, 単価, 金額 FROM 入出庫サブ ORDER BY 明細ID DESC LIMIT 1"_s),
            QStringList{stored.arg(id)});
        QCOMPARE(desk.lines().currentIndex().row(), 2);
        desk.type(desk.lines(), 2, u"金額"_s, u"600"_s); // a row like any other now
        if (slips::isTaxed(of))
            expectDoubt(asItIs);
        desk.driver.press("Command3");
        QCOMPARE(desk.shop.value(u"SELECT SUM(金額) FROM 入出庫サブ WHERE ID = ?"_s, {id}).toInt(), 2700);
        QCOMPARE(desk.shop.book().size(), before.size() + 1);
    }

    void aNewLineWithSomethingInItIsAskedAbout_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<int>("lines");
        QTest::newRow("kept") << intoTheSlip << 3;
        QTest::newRow("dropped") << drop << 2;
        QTest::newRow("gone back") << goBack << 2;
    }

    void aNewLineWithSomethingInItIsAskedAbout()
    {
        QFETCH(QString, answer);
        QFETCH(int, lines);
        Desk desk;
        const auto stored = [&] {
            return desk.shop.value(u"SELECT COUNT(*) FROM 入出庫サブ WHERE ID = 9"_s).toInt();
        };
        desk.driver.press("cmdLineAdd");
        desk.type(desk.lines(), 2, u"商品名"_s, u"みかん"_s);
        expectNewLine(answer);
        desk.lines().setCurrentIndex(Desk::cell(desk.lines(), 0, u"商品名"_s));
        QCOMPARE(stored(), lines);
        const bool stays = answer == goBack;
        QCOMPARE(desk.lines().currentIndex().row(), stays ? 2 : 0);
        QCOMPARE(desk.lines().model()->rowCount(), stays ? 3 : lines);
        if (!stays)
            return;
        desk.driver.press("cmdUndo"); // and that is how it goes again
        QCOMPARE(desk.lines().model()->rowCount(), 2);
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(stored(), 2);
    }

    void editsOfAnotherLineAreNotStoredByANewOne()
    {
        Desk desk;
        const QStringList before = desk.shop.book();
        desk.type(desk.lines(), 0, u"数量"_s, u"3"_s);
        expectDoubt(goBack);
        desk.driver.press("cmdLineAdd");
        QCOMPARE(desk.lines().model()->rowCount(), 2);
        QCOMPARE(Desk::cell(desk.lines(), 0, u"数量"_s).data().toString(), u"3"_s);
        expectDoubt(drop);
        desk.driver.press("cmdLineAdd");
        QCOMPARE(desk.lines().model()->rowCount(), 3);
        QCOMPARE(Desk::cell(desk.lines(), 0, u"数量"_s).data().toString(), u"2"_s);
        QCOMPARE(desk.shop.book(), before);
    }

    // By the arrow keys, by a click into the slips, by Esc: Enter on the box alone goes back each time.
    void aDoubtfulLineIsNotLeftUnasked()
    {
        Desk desk;
        const QStringList before = desk.shop.book();
        desk.type(desk.lines(), 0, u"数量"_s, u"3"_s);
        expectDoubt(goBack);
        QTest::keyClick(&desk.lines(), Qt::Key_Down);
        QCOMPARE(desk.lines().currentIndex().row(), 0);
        const auto clickOtherSlip = [&] {
            QTest::mouseClick(
                desk.headers().viewport(), Qt::LeftButton, {},
                desk.headers().visualRect(Desk::cell(desk.headers(), 0, u"伝票番号"_s)).center());
        };
        expectDoubt(goBack);
        clickOtherSlip();
        QCOMPARE(desk.driver.box("txtDenNo").text(), u"O9"_s);
        QCOMPARE(desk.headers().currentIndex().row(), 1);
        expectDoubt(goBack);
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
        QVERIFY(desk.screen->isVisible());
        QCOMPARE(desk.shop.book(), before);
        expectDoubt(drop);
        clickOtherSlip();
        QCOMPARE(desk.driver.box("txtDenNo").text(), u"O1"_s);
        QCOMPARE(desk.shop.book(), before);
    }

    // On the way to another line the header stays as it is edited.
    void aLineIsMendedAlone()
    {
        Desk desk;
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE 商品名 = '消費税'"_s);
        desk.shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (9, 'みかん', 1)"_s);
        desk.driver.press("cmdAll");
        desk.type(desk.headers(), 1, u"備考"_s, u"至急"_s);
        desk.type(desk.lines(), 0, u"数量"_s, u"3"_s);
        expectDoubt(recalculate);
        QTest::keyClick(&desk.lines(), Qt::Key_Down);
        QCOMPARE(desk.stored(), (QStringList{u"りんご|3|3000"_s, u"みかん|-|1"_s}));
        QVERIFY(desk.shop.value(u"SELECT 備考 FROM 入出庫マスター WHERE ID = 9"_s).isNull());
        QCOMPARE(Desk::cell(desk.headers(), 1, u"備考"_s).data().toString(), u"至急"_s);
        desk.driver.press("cmdUndo");
    }

    // Stored by 更新 or line by line, the slip is not left before somebody has said that it is meant.
    void theTaxIsAnsweredBeforeTheSlipIsLeft()
    {
        Desk desk;
        desk.type(desk.lines(), 0, u"数量"_s, u"3"_s);
        desk.type(desk.lines(), 0, u"金額"_s, u"3000"_s);
        desk.lines().setCurrentIndex(Desk::cell(desk.lines(), 1, u"金額"_s));
        QVERIFY(desk.message().contains(u"150 円になります"_s));
        const auto leave = [&] {
            desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 0, u"伝票番号"_s));
            return desk.driver.box("txtDenNo").text() == u"O1"_s;
        };
        ui::prompts::expectAskWhichWay(
            doubtQuestion, goBack,
            taxRemark + u"\n計算し直すと、合計 3,150 円（うち消費税 150 円）になります。"_s);
        QVERIFY(!leave());
        expectDoubt(goBack);
        desk.screen->close();
        QVERIFY(desk.screen->isVisible());
        desk.type(desk.lines(), 1, u"金額"_s, u"150"_s);
        QVERIFY(leave());
        QCOMPARE(desk.shop.rows(u"SELECT 金額 FROM 入出庫サブ WHERE ID = 9"_s),
                 (QStringList{u"3000"_s, u"150"_s}));
        // One that was found so is looked at without a word.
        desk.shop.run(u"UPDATE 入出庫サブ SET 金額 = 7 WHERE ID = 9 AND 商品名 = '消費税'"_s);
        desk.driver.press("cmdAll");
        QVERIFY(desk.message().contains(u"消費税の行は 7 円ですが"_s));
        QVERIFY(leave());
    }

    // Once the clerk has said so, the slips can be read anew without another word.
    void theTaxIsAskedAboutOnce()
    {
        Desk desk;
        desk.type(desk.lines(), 0, u"数量"_s, u"3"_s);
        desk.type(desk.lines(), 0, u"金額"_s, u"3000"_s);
        desk.lines().setCurrentIndex(Desk::cell(desk.lines(), 1, u"金額"_s));
        expectDoubt(asItIs);
        desk.driver.press("cmdAll");
        QCOMPARE(desk.stored(), (QStringList{u"りんご|3|3000"_s, u"消費税|-|100"_s}));
    }

    void allIsComputedAnewInOneAction_data()
    {
        QTest::addColumn<QString>("heading"); // of the line, of the header where it is none of the line's
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("lines");
        const auto row = [](const char *name, const QString &heading, int line, const QString &typed,
                            const QStringList &lines) {
            QTest::newRow(name) << heading << line << typed << lines;
        };
        const QString untouched = u"りんご|2|2000"_s;
        row("quantity", u"数量"_s, 0, u"３"_s, {u"りんご|3|3000"_s, u"消費税|-|150"_s});
        row("half a yen", u"数量"_s, 0, u"2.1005"_s, {u"りんご|2.1005|2100"_s, u"消費税|-|105"_s});
        row("price", u"単価"_s, 0, u"999.9"_s, {u"りんご|2|1999"_s, u"消費税|-|99"_s});
        row("nothing left to tax", u"単価"_s, 0, u"5"_s, {u"りんご|2|10"_s});
        row("a slip of the finger", u"金額"_s, 0, u"20000"_s, {untouched, u"消費税|-|100"_s});
        row("the tax itself", u"金額"_s, 1, u"99"_s, {untouched, u"消費税|-|100"_s});
        row("rate", u"税率 %"_s, 1, u"8"_s, {untouched, u"消費税|-|160"_s});
        row("prices that include it", u"内税"_s, 1, u"税込"_s, {untouched});
        row("a customer of the bill", u"納品先"_s, 1, u"3"_s, {untouched});
    }

    // By 更新, by leaving the row and by leaving the slip.
    void allIsComputedAnewInOneAction()
    {
        QFETCH(QString, heading);
        QFETCH(int, row);
        QFETCH(QString, typed);
        const bool isOfLine = heading == u"数量"_s || heading == u"単価"_s || heading == u"金額"_s;
        for (const QString &way : {u"Command3"_s, u"cmdAll"_s, u"Down"_s}) {
            if (way == u"Down"_s && (!isOfLine || row == 1))
                continue;
            Desk desk;
            desk.shop.run(u"UPDATE 納品先 SET 消費税区分 = 1 WHERE 納品先ID = 3"_s);
            desk.type(isOfLine ? desk.lines() : desk.headers(), row, heading, typed);
            expectDoubt(recalculate);
            if (way == u"Down"_s)
                QTest::keyClick(&desk.lines(), Qt::Key_Down);
            else
                desk.driver.press(qPrintable(way));
            QTEST(desk.stored(), "lines");
        }
    }
};

QTEST_MAIN(TestCorrectionQuestions)
#include "tst_correction_questions.moc"

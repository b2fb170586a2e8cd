#include "slips/correction/correction_screen_desk.h"

#include "support/scripted_test.h"
#include "ui/prompts.h"

using namespace slips;
using Desk = CorrectionDesk;
using enum ui::prompts::Version;

namespace
{

const QStringList withTax{u"りんご|3|3000"_s, u"消費税|-|150"_s};
const QStringList withoutTax{u"りんご|3|3000"_s};

void run(Desk &desk, const QStringList &statements)
{
    for (const QString &statement : statements)
        desk.shop.run(statement);
}

// What a merge of customer 2 into customer 1, of \a taxClass, leaves.
QStringList mergedInto(int taxClass)
{
    return {u"UPDATE 納品先 SET 消費税区分 = %1 WHERE 納品先ID = 1"_s.arg(taxClass),
            u"UPDATE 入出庫マスター SET 相手先ID = 1, 版 = 50 WHERE ID = 9"_s,
            u"DELETE FROM 納品先 WHERE 納品先ID = 2"_s};
}

// Leaves the edited slip in one of the ways that store it.
void leave(Desk &desk, const QString &way)
{
    if (way == u"Down")
        QTest::keyClick(&desk.lines(), Qt::Key_Down);
    else if (way == u"close")
        desk.screen->close();
    else if (way == u"row")
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 0, u"伝票番号"_s));
    else
        desk.driver.press(qPrintable(way));
    QTest::qWait(1);
}

} // namespace

// Another program changes what a slip's tax goes by, while the slip is being corrected.
class TestCorrectionMeanwhile : public ScriptedTest
{
    Q_OBJECT

    static void addChanges()
    {
        QTest::addColumn<QStringList>("change");
        QTest::addColumn<bool>("isOfRow"); // so that the clerk is asked whose row stays
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("merged away") << mergedInto(0) << true << withTax;
        QTest::newRow("merged into one of the bill") << mergedInto(1) << true << withoutTax;
        // Its slips of before were not entered as such.
        QTest::newRow("merged into one of prices with tax") << mergedInto(2) << true << withTax;
        QTest::newRow("taxed on the bill")
            << QStringList{u"UPDATE 納品先 SET 消費税区分 = 1 WHERE 納品先ID = 2"_s} << false << withoutTax;
        QTest::newRow("gone") << QStringList{u"DELETE FROM 納品先 WHERE 納品先ID = 2"_s} << false << withTax;
        QTest::newRow("rate")
            << QStringList{u"UPDATE 入出庫マスター SET 消費税率 = 10, 版 = 50 WHERE ID = 9"_s} << true
            << QStringList{u"りんご|3|3000"_s, u"消費税|-|300"_s};
        QTest::newRow("prices with tax")
            << QStringList{u"UPDATE 入出庫マスター SET 内税 = 1, 版 = 50 WHERE ID = 9"_s} << true
            << withoutTax;
        QTest::newRow("another line")
            << QStringList{u"UPDATE 入出庫サブ SET 金額 = 90, 版 = 50 WHERE ID = 9 AND 商品名 = '消費税'"_s}
            << false << withTax;
    }

private slots:
    void whatIsAskedIsAskedOfTheFile_data() { addChanges(); }

    // Changed before the question, in every way out of the slip.
    void whatIsAskedIsAskedOfTheFile()
    {
        QFETCH(QStringList, change);
        QFETCH(bool, isOfRow);
        for (const QString &way : {u"Command3"_s, u"Down"_s, u"row"_s, u"cmdAll"_s, u"close"_s}) {
            Desk desk;
            desk.type(desk.lines(), 0, u"数量"_s, u"3"_s);
            run(desk, change);
            if (isOfRow) {
                ui::prompts::expectAskWhichVersion({}, Undecided);
                leave(desk, way);
                QCOMPARE(Desk::cell(desk.lines(), 0, u"数量"_s).data().toString(), u"3"_s);
                QCOMPARE(Desk::cell(desk.lines(), 0, u"金額"_s).data().toString(), u"2,000"_s);
                ui::prompts::expectAskWhichVersion({}, Mine);
            }
            expectDoubt(recalculate);
            leave(desk, way);
            QTEST(desk.stored(), "lines");
        }
    }

    void anAnswerHoldsForWhatWasAsked_data() { addChanges(); }

    // Changed while the question stands.
    void anAnswerHoldsForWhatWasAsked()
    {
        QFETCH(QStringList, change);
        QFETCH(bool, isOfRow);
        QFETCH(QStringList, lines);
        for (const QString &way : {u"Command3"_s, u"Down"_s, u"row"_s, u"close"_s}) {
            Desk desk;
            desk.type(desk.lines(), 0, u"数量"_s, u"3"_s);
            const QStringList before = desk.stored();
            expectDoubt(recalculate);
            ui::prompts::meanwhile([&] { run(desk, change); });
            if (isOfRow)
                ui::prompts::expectAskWhichVersion({}, Mine);
            // On leaving a line its tax is not asked about yet.
            const bool seesTheSame =
                lines == withTax && (way == u"Down" || change.last().contains(u"納品先"_s));
            if (!seesTheSame)
                expectDoubt(goBack);
            leave(desk, way);
            if (seesTheSame) {
                QCOMPARE(desk.stored(), lines);
                continue;
            }
            QVERIFY(desk.stored().contains(before.front()));
            QCOMPARE(Desk::cell(desk.lines(), 0, u"金額"_s).data().toString(), u"2,000"_s);
            expectDoubt(recalculate);
            leave(desk, way);
            QCOMPARE(desk.stored(), lines);
        }
    }

    // The twins, which have the same base: of a supplier, and an estimate.
    void purchasesAndEstimatesToo()
    {
        for (const book::SlipKind &kind : {book::purchase, book::estimate}) {
            Desk desk(kind);
            desk.type(desk.lines(), 0, u"数量"_s, u"3"_s);
            run(desk, {u"UPDATE 納品先 SET 消費税区分 = 1"_s, u"UPDATE 仕入先 SET 消費税区分 = 1"_s});
            expectDoubt(recalculate);
            desk.driver.press("Command3");
            QCOMPARE(desk.shop.rows(u"SELECT 商品名, 数量, 金額 FROM 入出庫サブ WHERE ID = (SELECT ID FROM "
                                    "入出庫マスター WHERE 種別 = ?)"_s,
                                    {QString(QChar(kind.letter))}),
                     withoutTax);
        }
    }

    // No preview comes of what was not asked about.
    void whatIsPrintedIsWhatWasAskedAbout()
    {
        Desk desk;
        desk.shop.run(u"UPDATE 入出庫サブ SET 金額 = 2500 WHERE ID = 9 AND 商品名 = 'りんご'"_s);
        desk.driver.press("cmdAll");
        const QString print = u"金額または消費税が、明細と合っていません。計算し直して印刷しますか。"_s;
        ui::prompts::expectAskWhichWay(print, u"計算し直して印刷"_s);
        ui::prompts::meanwhile(
            [&] { run(desk, {u"UPDATE 入出庫マスター SET 消費税率 = 10, 版 = 50 WHERE ID = 9"_s}); });
        ui::prompts::expectAskWhichWay(print, goBack);
        desk.driver.press("Command2");
        QCOMPARE(desk.stored(), (QStringList{u"りんご|2|2500"_s, u"消費税|-|100"_s}));
        QCOMPARE(Desk::cell(desk.headers(), 1, u"税率 %"_s).data().toString(), u"10"_s);
    }

    void theOthersVersionStays()
    {
        Desk desk;
        desk.type(desk.lines(), 0, u"数量"_s, u"3"_s);
        run(desk, mergedInto(1));
        ui::prompts::expectAskWhichVersion({}, Theirs);
        desk.driver.press("Command3");
        QCOMPARE(desk.stored(), (QStringList{u"りんご|2|2000"_s, u"消費税|-|100"_s}));
        QCOMPARE(desk.driver.box("txtNouhinsaki1").text(), u"客1"_s);
        QVERIFY(desk.message().contains(u"この相手先の消費税は外税 （請求時）ですが"_s));
    }

    // What was computed is not what the clerk typed.
    void anAmountIsNotLeftBehind()
    {
        Desk desk;
        desk.type(desk.lines(), 0, u"数量"_s, u"3"_s);
        desk.shop.run(u"PRAGMA query_only = 1"_s);
        expectDoubt(recalculate);
        ui::prompts::expectInform({});
        desk.driver.press("Command3");
        desk.shop.run(u"PRAGMA query_only = 0"_s);
        QTest::qWait(1);
        QCOMPARE(Desk::cell(desk.lines(), 0, u"数量"_s).data().toString(), u"3"_s);
        QCOMPARE(Desk::cell(desk.lines(), 0, u"金額"_s).data().toString(), u"2,000"_s);
    }

    void aSlipThatIsGoneIsNotUpdated()
    {
        Desk desk;
        desk.type(desk.lines(), 0, u"数量"_s, u"3"_s);
        run(desk, {u"DELETE FROM 入出庫サブ WHERE ID = 9"_s, u"DELETE FROM 入出庫マスター WHERE ID = 9"_s});
        ui::prompts::expectInform({});
        desk.driver.press("Command3");
        QTRY_COMPARE(desk.driver.box("txtDenNo").text(), u"O1"_s);
        QVERIFY(!desk.message().contains(u"更新しました"_s));
    }
};

QTEST_MAIN(TestCorrectionMeanwhile)
#include "tst_correction_meanwhile.moc"

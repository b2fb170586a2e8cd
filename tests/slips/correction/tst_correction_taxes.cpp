#include "slips/correction/correction_screen_desk.h"
#include "support/scripted_test.h"

using Desk = CorrectionDesk;

// The class of tax of a stored line, in shops that go by the table of rates.
class TestCorrectionTaxes : public ScriptedTest
{
    Q_OBJECT

private slots:
    void aClassBringsItsRate_data();
    void aClassBringsItsRate();
    void taxLinesAreMadeAnewByRate();
    void aTaxOfTheWrongRateIsDoubted();
    void aReturnNamesItsSale();
    void nonsenseIsRefused_data();
    void nonsenseIsRefused();
    void oneRateByHandShowsNoClasses();
};

namespace
{

const QString taxOfNine = u"SELECT 税区分, 税率 FROM 入出庫サブ WHERE ID = 9 ORDER BY 明細ID"_s;

} // namespace

void TestCorrectionTaxes::aClassBringsItsRate_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("stored"); // 税区分|税率, of a slip of 5 %

    QTest::newRow("reduced") << u"軽減"_s << u"1|8"_s;
    QTest::newRow("in full") << u"軽減（飲食料品）"_s << u"1|8"_s;
    QTest::newRow("by number, in full width") << u"２"_s << u"2|8"_s;
    QTest::newRow("exempt") << u" 非課税 "_s << u"3|0"_s;
    QTest::newRow("out of scope") << u"対象外"_s << u"4|0"_s;
    QTest::newRow("as the slip says") << u"標準"_s << u"0|5"_s;
}

void TestCorrectionTaxes::aClassBringsItsRate()
{
    QFETCH(QString, typed);
    Desk desk(book::sale, true);
    desk.type(desk.lines(), 0, u"税区分"_s, typed);
    if (!typed.contains(u"標準"))
        expectDoubt(asItIs); // of the tax line, which is of 5 %
    desk.driver.press("Command3");
    QTEST(desk.shop.rows(taxOfNine).front(), "stored");
    // Back to the slip's own, rate and all.
    desk.type(desk.lines(), 0, u"税区分"_s, QString());
    desk.driver.press("Command3");
    QCOMPARE(desk.shop.rows(taxOfNine), QStringList({u"-|-"_s, u"-|-"_s}));
}

void TestCorrectionTaxes::taxLinesAreMadeAnewByRate()
{
    Desk desk(book::sale, true);
    desk.shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 数量, 単価, 金額) VALUES (9, '箱', 1, 1000, 1000)"_s);
    for (const int row : {0, 1}) // reads the lines anew
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), row, u"伝票番号"_s));
    desk.type(desk.lines(), 0, u"税区分"_s, u"軽減"_s);
    expectDoubt(recalculate);
    desk.driver.press("Command3");
    QCOMPARE(desk.shop.rows(
                 u"SELECT 商品名, 規格, 金額, 税区分, 税率 FROM 入出庫サブ WHERE ID = 9 ORDER BY 明細ID"_s),
             QStringList({u"りんご|箱|2000|1|8"_s, u"箱|-|1000|-|-"_s, u"消費税|5%|50|0|5"_s,
                          u"消費税|軽減8%|160|1|8"_s}));
}

// The same yen in one line: right in sum, wrong on the invoice.
void TestCorrectionTaxes::aTaxOfTheWrongRateIsDoubted()
{
    Desk desk(book::sale, true);
    desk.shop.run(u"UPDATE 入出庫サブ SET 税区分 = 1, 税率 = 5 WHERE ID = 9 AND 商品名 = 'りんご'"_s);
    for (const int row : {0, 1})
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), row, u"伝票番号"_s));
    QVERIFY2(desk.message().contains(u"税率 5 %"_s), qPrintable(desk.message()));
    desk.shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 数量, 単価, 金額) VALUES (9, '箱', 1, 1000, 1000)"_s);
    desk.shop.run(u"UPDATE 入出庫サブ SET 金額 = 150 WHERE ID = 9 AND 商品名 = '消費税'"_s);
    for (const int row : {0, 1})
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), row, u"伝票番号"_s));
    QVERIFY2(desk.message().contains(
                 u"消費税の行は 5% 150 円 ですが、いまの明細では 5% 50 円、軽減5% 100 円 になります。"_s),
             qPrintable(desk.message()));
}

void TestCorrectionTaxes::aReturnNamesItsSale()
{
    Desk desk(book::sale, true);
    desk.shop.run(u"UPDATE 入出庫マスター SET 元伝票 = 1 WHERE ID = 9"_s);
    for (const int row : {0, 1})
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), row, u"伝票番号"_s));
    QVERIFY2(desk.message().contains(u"伝票 O1（2026/03/01）の返品です。"_s), qPrintable(desk.message()));
    desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 0, u"伝票番号"_s));
    QVERIFY(!desk.message().contains(u"返品"_s));
}

void TestCorrectionTaxes::nonsenseIsRefused_data()
{
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("typed");
    QTest::newRow("a class that there is not") << u"税区分"_s << u"5"_s;
    QTest::newRow("a word") << u"税区分"_s << u"食品"_s;
    QTest::newRow("a rate below nothing") << u"税率 %"_s << u"-1"_s;
    QTest::newRow("a rate over all") << u"税率 %"_s << u"101"_s;
    QTest::newRow("letters") << u"税率 %"_s << u"八"_s;
}

void TestCorrectionTaxes::nonsenseIsRefused()
{
    QFETCH(QString, column);
    QFETCH(QString, typed);
    Desk desk(book::sale, true);
    const QStringList before = desk.shop.rows(taxOfNine);
    ui::prompts::expectInform({});
    desk.type(desk.lines(), 0, column, typed);
    QTest::keyClick(desk.lines().viewport()->findChild<QLineEdit *>(), Qt::Key_Escape);
    desk.driver.press("Command3");
    QCOMPARE(desk.shop.rows(taxOfNine), before);
}

void TestCorrectionTaxes::oneRateByHandShowsNoClasses()
{
    for (const bool follows : {false, true}) {
        Desk desk(book::sale, follows);
        QStringList headings;
        const QAbstractItemModel &model = *desk.lines().model();
        for (int column = 0; column < model.columnCount(); ++column) {
            if (!desk.lines().isColumnHidden(column))
                headings << model.headerData(column, Qt::Horizontal).toString();
        }
        QCOMPARE(headings.contains(u"税区分"_s), follows);
    }
}

QTEST_MAIN(TestCorrectionTaxes)
#include "tst_correction_taxes.moc"

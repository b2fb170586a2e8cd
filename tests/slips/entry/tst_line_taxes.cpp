#include "book/printed_slip.h"
#include "slips/documents/invoice_rates.h"
#include "slips/entry/sales_desk.h"
#include "slips/tax_rates_of.h"
#include "support/scripted_test.h"
#include "ui/grid.h"
#include "ui/prompts.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace
{

/// A food shop that follows the table of rates.
class FoodDesk : public SalesDesk
{
public:
    FoodDesk()
    {
        shop.workspace.panel.followsTaxTable = true;
        shop.run(
            u"INSERT INTO 納品商品 (商品ID, 商品名, 税区分) VALUES (11, 'リンゴ', 1), (12, '送料', NULL), "
            "(13, '週刊茶', 2), (14, '切手', 3), (15, '立替金', 4), (16, '紅玉', 1)"_s);
        reopen();
    }

    void openOn(int taxClass, const QString &date)
    {
        choose(taxClass);
        auto &day = the<QDateEdit>("DTPicker1");
        day.setFocus();
        QTest::keyClick(&day, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(&day, date);
        press("cmdMasterUpdate");
    }

    // "紅玉 3 1980; 送料 1 800 経過措置 8%": what is typed line by line, the last word what is chosen.
    void enter(const QString &lines)
    {
        for (const QString &typed : lines.split(u"; "_s)) {
            const QString chosen = typed.section(u' ', 3);
            if (!chosen.isEmpty())
                driver().choose("cboLineTax", chosen);
            line(typed.section(u' ', 1, 1), typed.section(u' ', 2, 2), typed.section(u' ', 0, 0));
        }
    }

    // What the closed slip bears: "商品|規格|金額|税区分|税率".
    QStringList stored()
    {
        return shop.rows(u"SELECT 商品名, 規格, 金額, 税区分, 税率 FROM 入出庫サブ ORDER BY 明細ID"_s);
    }

    QString onPaper(qint64 id)
    {
        auto slip = book::readSlip(shop.connection, id, book::Party::Customer);
        const bool inclusive =
            shop.value(u"SELECT 内税 FROM 入出庫マスター WHERE ID = %1"_s.arg(id)).toInt() == 1;
        const auto printed = book::taxedForPrint(*slip, {inclusive, std::nullopt});
        const auto rates = slips::invoiceRates(*printed);
        QStringList parts;
        for (const slips::InvoiceRate &rate : *rates)
            parts << u"%1: %2+%3"_s.arg(rate.name).arg(rate.amount, 0, 'f', 0).arg(rate.tax, 0, 'f', 0);
        return parts.join(u", "_s);
    }
};

} // namespace

class TestLineTaxes : public ScriptedTest
{
    Q_OBJECT

private slots:
    void fromTheScreenToThePaper_data();
    void fromTheScreenToThePaper();
    void aShopOfOneRateSeesNothingOfIt();
    void theBoxFollowsTheProduct();
    void theGridTellsWhatIsTaxedOtherwise();
    void theTotalsAreOfAllRates();
    void aDiscountIsDividedOverTheRates_data();
    void aDiscountIsDividedOverTheRates();
    void returnsTakeTheRateOfTheirSale_data();
    void returnsTakeTheRateOfTheirSale();
    void goingBackFromTheQuestionStoresNothing();
    void oneQuestionForASlip();
    void goodsOfAnotherSaleAreAskedAbout();
    void aDiscountIsTakenBackWhole();
};

void TestLineTaxes::fromTheScreenToThePaper_data()
{
    QTest::addColumn<int>("taxClass");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("lines");
    QTest::addColumn<QStringList>("taxLines"); // 規格|金額|税区分|税率
    QTest::addColumn<QString>("paper");

    const QString day = u"2026/4/1"_s;
    QTest::newRow("one rate is stored as ever")
        << 0 << day << u"箱 1 105; 箱 1 105; 箱 1 105"_s << QStringList{u"-|31|-|-"_s} << u"10%: 315+31"_s;
    QTest::newRow("food alone has one line without a word")
        << 0 << day << u"紅玉 3 1,000"_s << QStringList{u"-|240|1|8"_s} << u"軽減8%: 3000+240"_s;
    QTest::newRow("two rates") << 0 << day
                               << u"紅玉 1 1980; リンゴ ２ ４５８; ﾘﾝｺﾞ 1 315; 箱 1 1234; 送料 1 770"_s
                               << QStringList{u"10%|200|0|10"_s, u"軽減8%|256|1|8"_s}
                               << u"10%: 2004+200, 軽減8%: 3211+256"_s;
    QTest::newRow("food and postage")
        << 0 << day << u"紅玉 1 5000; 送料 1 800"_s << QStringList{u"10%|80|0|10"_s, u"軽減8%|400|1|8"_s}
        << u"10%: 800+80, 軽減8%: 5000+400"_s;
    QTest::newRow("prices with the tax") << 2 << day << u"紅玉 1 5400; 箱 1 3300"_s << QStringList()
                                         << u"10%税込: 3300+300, 軽減8%税込: 5400+400"_s;
    QTest::newRow("with what is not taxed")
        << 0 << day << u"箱 1 1000; 切手 1 840; 立替金 1 500"_s << QStringList{u"-|100|0|10"_s}
        << u"10%: 1000+100, 非課税: 840+0, 対象外: 500+0"_s;
    QTest::newRow("newspapers and food together")
        << 0 << day << u"紅玉 1 12; 週刊茶 1 13"_s << QStringList{u"-|2|1|8"_s} << u"軽減8%: 25+2"_s;
    QTest::newRow("the old 8 by hand stands apart")
        << 0 << day << u"箱 1 1000 経過措置 8%; 紅玉 1 1000; 箱 1 1000"_s
        << QStringList{u"8%|80|0|8"_s, u"10%|100|0|10"_s, u"軽減8%|80|1|8"_s}
        << u"8%: 1000+80, 10%: 1000+100, 軽減8%: 1000+80"_s;
    QTest::newRow("before food had a rate of its own")
        << 0 << u"2019/9/30"_s << u"紅玉 1 12345"_s << QStringList{u"-|987|-|-"_s} << u"8%: 12345+987"_s;
    QTest::newRow("the last day of five")
        << 0 << u"2014/3/31"_s << u"箱 1 12345"_s << QStringList{u"-|617|-|-"_s} << u"5%: 12345+617"_s;
    QTest::newRow("nothing to tax") << 0 << day << u"箱 1 9"_s << QStringList() << u"10%: 9+0"_s;
}

void TestLineTaxes::fromTheScreenToThePaper()
{
    QFETCH(int, taxClass);
    QFETCH(QString, date);
    QFETCH(QString, lines);
    FoodDesk desk;
    desk.openOn(taxClass, date);
    desk.enter(lines);
    desk.press("cmdNext");
    QTEST(desk.shop.rows(
              u"SELECT 規格, 金額, 税区分, 税率 FROM 入出庫サブ WHERE 商品名 = '消費税' ORDER BY 明細ID"_s),
          "taxLines");
    QTEST(desk.onPaper(1), "paper");
}

// Nothing to be seen, nothing in the way of the Tab key, and every column as it was.
void TestLineTaxes::aShopOfOneRateSeesNothingOfIt()
{
    SalesDesk desk;
    desk.shop.run(u"UPDATE 納品商品 SET 税区分 = 1"_s);
    QVERIFY(desk.the<QTableView>("dgdSub").isColumnHidden(6));
    desk.open(0);
    QVERIFY(!desk.the("cboLineTax").isVisible());
    QVERIFY(!desk.the("lblLineTax").isVisible());
    QVERIFY(desk.the<QTableView>("dgdSub").isColumnHidden(6));
    desk.line(u"-1"_s, u"1000"_s); // no question either
    desk.line(u"3"_s, u"1000"_s);
    desk.press("cmdNext");
    QCOMPARE(desk.shop.rows(u"SELECT 商品名, 規格, 金額, 税区分, 税率 FROM 入出庫サブ ORDER BY 明細ID"_s),
             QStringList({u"ふじりんご||-1000|-|-"_s, u"ふじりんご||3000|-|-"_s, u"消費税|-|100|-|-"_s}));
}

void TestLineTaxes::theBoxFollowsTheProduct()
{
    FoodDesk desk;
    desk.open(0);
    auto &tax = desk.driver().list("cboLineTax");
    auto &product = desk.driver().list("dbcShohin");
    QVERIFY(tax.isVisible());
    QCOMPARE(tax.currentText(), u"10%"_s);
    product.setEditText(u"紅玉"_s);
    QCOMPARE(tax.currentText(), u"軽減8% 食品"_s);
    product.setEditText(u"送料"_s);
    QCOMPARE(tax.currentText(), u"10%"_s);
    // Chosen by hand it stays, whatever is typed before the line is done; the next line begins anew.
    desk.driver().choose("cboLineTax", u"非課税"_s);
    product.setEditText(u"紅玉"_s);
    QCOMPARE(tax.currentText(), u"非課税"_s);
    desk.line(u"1"_s, u"100"_s, u"紅玉"_s);
    QCOMPARE(desk.stored(), QStringList{u"紅玉||100|3|0"_s});
    QCOMPARE(tax.currentText(), u"10%"_s);
    // The wheel over the box is meant for the page.
    turnWheelOver(tax);
    QCOMPARE(tax.currentText(), u"10%"_s);
    // Tab and Enter pass it by.
    product.setFocus();
    for (const char *next : {"dbcKikaku", "txtCnt", "dbcTani", "txtTanka", "cmdSubAdd"}) {
        QTest::keyClick(desk.screen().focusWidget(), Qt::Key_Tab);
        QCOMPARE(desk.driver().cursor(), QLatin1StringView(next));
    }
    QTest::keyClick(desk.screen().focusWidget(), Qt::Key_X, Qt::AltModifier);
    QCOMPARE(desk.driver().cursor(), u"cboLineTax"_s);
}

void TestLineTaxes::theGridTellsWhatIsTaxedOtherwise()
{
    FoodDesk desk;
    desk.screen().resize(1240, 730);
    QTest::qWait(20);
    desk.open(0);
    desk.enter(u"紅玉 1 100; 箱 1 100; 切手 1 84; 箱 1 100 経過措置 8%"_s);
    const auto &grid = desk.the<QTableView>("dgdSub");
    QVERIFY(!grid.isColumnHidden(6));
    QStringList marks;
    for (int row = 0; row < grid.model()->rowCount(); ++row)
        marks << grid.model()->index(row, 6).data().toString();
    // The amount stays in sight.
    QVERIFY(grid.columnViewportPosition(5) + grid.columnWidth(5) <= grid.viewport()->width());
    QCOMPARE(marks, QStringList({u"※8%"_s, QString(), u"非課税"_s, u"8%"_s}));
}

void TestLineTaxes::theTotalsAreOfAllRates()
{
    FoodDesk desk;
    desk.open(0);
    desk.enter(u"紅玉 1 1013; 箱 1 1009"_s);
    QCOMPARE(desk.text("txtTotal"), u"2,022"_s);
    QCOMPARE(desk.text("Text2"), u"181"_s); // 81 + 100
    QCOMPARE(desk.text("txtWithTax"), u"2,203 円（税込）"_s);
    desk.press("cmdSubCancel");
    QCOMPARE(desk.text("Text2"), u"81"_s);
}

void TestLineTaxes::aDiscountIsDividedOverTheRates_data()
{
    QTest::addColumn<int>("taxClass");
    QTest::addColumn<QString>("goods");
    QTest::addColumn<QString>("discount");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("in proportion") << 2 << u"紅玉 1 2160; 箱 1 3300"_s << u"クーポン 1 -500"_s
                                   << QStringList{u"クーポン|軽減8%分|-197|1|8"_s,
                                                  u"クーポン|10%分|-303|-|-"_s};
    QTest::newRow("chosen by hand") << 2 << u"紅玉 1 2160; 箱 1 3300"_s << u"クーポン 1 -500 軽減8% 食品"_s
                                    << QStringList{u"クーポン||-500|1|8"_s};
    QTest::newRow("of food alone") << 0 << u"紅玉 1 2160"_s << u"値引 1 -160"_s
                                   << QStringList{u"値引||-160|1|8"_s};
    QTest::newRow("of everyday goods alone")
        << 0 << u"箱 1 2160"_s << u"値引 2 -80"_s << QStringList{u"値引||-160|-|-"_s};
    QTest::newRow("a yen") << 0 << u"紅玉 1 10; 箱 1 1000"_s << u"値引 1 -1"_s
                           << QStringList{u"値引|10%分|-1|-|-"_s};
    QTest::newRow("of nothing") << 0 << u"箱 0 100"_s << u"値引 1 -100"_s << QStringList{u"値引||-100|-|-"_s};
}

void TestLineTaxes::aDiscountIsDividedOverTheRates()
{
    QFETCH(int, taxClass);
    QFETCH(QString, goods);
    QFETCH(QString, discount);
    FoodDesk desk;
    desk.open(taxClass);
    desk.enter(goods);
    const qsizetype before = desk.stored().size();
    desk.enter(discount);
    QTEST(desk.stored().mid(before), "lines");
    QCOMPARE(desk.the<QTableView>("dgdSub").model()->rowCount(), int(desk.stored().size()));
}

void TestLineTaxes::returnsTakeTheRateOfTheirSale_data()
{
    QTest::addColumn<QString>("sold"); // a line of a slip of 2019/9/30
    QTest::addColumn<QString>("returned");
    QTest::addColumn<QString>("answer"); // the button
    QTest::addColumn<QString>("line");   // 金額|税区分|税率
    QTest::addColumn<QString>("original");

    QTest::newRow("of the slip") << u"箱 5 1000"_s << u"箱 -1 1000"_s << u"cmdTake"_s << u"-1000|0|8"_s
                                 << u"1"_s;
    QTest::newRow("the same goods in another width")
        << u"リンゴ 5 1000"_s << u"ﾘﾝｺﾞ -1 1000"_s << u"cmdTake"_s << u"-1000|0|8"_s << u"1"_s;
    QTest::newRow("of none that is known")
        << u"箱 5 1000"_s << u"箱 -1 1000"_s << u"cmdNone"_s << u"-1000|-|-"_s << u"-"_s;
    QTest::newRow("by hand all the same")
        << u"箱 5 1000"_s << u"箱 -1 1000 経過措置 5%"_s << u"cmdTake"_s << u"-1000|0|5"_s << u"1"_s;
}

void TestLineTaxes::returnsTakeTheRateOfTheirSale()
{
    QFETCH(QString, sold);
    QFETCH(QString, returned);
    QFETCH(QString, answer);
    FoodDesk desk;
    desk.openOn(0, u"2019/9/30"_s);
    desk.enter(sold);
    desk.press("cmdNext");
    desk.openOn(0, u"2026/4/1"_s);
    QTimer::singleShot(50, &desk.screen(),
                       [&] { ScreenDriver(QApplication::activeModalWidget()).press(answer); });
    desk.enter(returned);
    QTEST(desk.shop.rows(u"SELECT 金額, 税区分, 税率 FROM 入出庫サブ WHERE ID = 2"_s).value(0), "line");
    QTEST(desk.shop.rows(u"SELECT 元伝票 FROM 入出庫マスター WHERE ID = 2"_s).value(0), "original");
}

void TestLineTaxes::goingBackFromTheQuestionStoresNothing()
{
    FoodDesk desk;
    desk.open(0);
    QTimer::singleShot(50, &desk.screen(),
                       [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
    desk.enter(u"紅玉 -3 1000"_s);
    QCOMPARE(desk.stored(), QStringList());
    QCOMPARE(desk.driver().cursor(), u"txtCnt"_s);
    QCOMPARE(desk.text("txtCnt"), u"-3"_s);
    QCOMPARE(desk.driver().list("dbcShohin").currentText(), u"紅玉"_s);
}

void TestLineTaxes::oneQuestionForASlip()
{
    FoodDesk desk;
    desk.openOn(0, u"2026/3/1"_s);
    desk.enter(u"紅玉 5 1000; 箱 5 1000"_s);
    desk.press("cmdNext");
    for (int slip = 2; slip < 4; ++slip) {
        desk.openOn(0, u"2026/4/1"_s);
        int asked = 0;
        QTimer::singleShot(50, &desk.screen(), [&] {
            ++asked;
            ScreenDriver(QApplication::activeModalWidget()).press("cmdTake");
        });
        desk.enter(u"紅玉 -1 1000; 箱 -1 1000"_s);
        QCOMPARE(asked, 1); // anew for each slip
        desk.press("cmdNext");
        QCOMPARE(desk.shop.rows(u"SELECT 規格, 金額 FROM 入出庫サブ WHERE 商品名 = '消費税' AND ID = %1 "
                                "ORDER BY 明細ID"_s.arg(slip)),
                 QStringList({u"10%|-100"_s, u"軽減8%|-80"_s}));
    }
}

void TestLineTaxes::goodsOfAnotherSaleAreAskedAbout()
{
    FoodDesk desk;
    desk.openOn(0, u"2019/9/30"_s);
    desk.enter(u"箱 5 1000"_s);
    desk.press("cmdNext");
    desk.openOn(0, u"2026/4/1"_s);
    const QString question = u"元の伝票 O1 に「皿」はありません。いまの税区分のまま入れますか。"_s;
    const QString advice = u"別の伝票の返品は、伝票を分けて入力してください。"_s;
    for (const bool yes : {false, true}) {
        // Gone back, the clerk is asked for the slip anew.
        QTimer::singleShot(50, &desk.screen(),
                           [] { ScreenDriver(QApplication::activeModalWidget()).press("cmdTake"); });
        ui::prompts::expectAskCautiously(question, yes, advice);
        desk.enter(u"皿 -1 1000"_s);
        QCOMPARE(desk.shop.rows(u"SELECT 金額, 税区分, 税率 FROM 入出庫サブ WHERE ID = 2"_s),
                 yes ? QStringList{u"-1000|-|-"_s} : QStringList());
    }
    // A slip has one original, which is settled now.
    ui::prompts::expectAskCautiously(u"元の伝票 O1 に「鉢」はありません。いまの税区分のまま入れますか。"_s,
                                     false, advice);
    desk.enter(u"鉢 -1 500"_s);
    desk.enter(u"箱 -1 1000"_s);
    QCOMPARE(desk.shop.rows(u"SELECT 金額, 税率 FROM 入出庫サブ WHERE ID = 2 ORDER BY 明細ID"_s),
             QStringList({u"-1000|-"_s, u"-1000|8"_s}));
}

void TestLineTaxes::aDiscountIsTakenBackWhole()
{
    FoodDesk desk;
    desk.open(0);
    desk.enter(u"紅玉 1 2160; 箱 1 3300; 値引 1 -500; 箱 1 100"_s);
    QCOMPARE(desk.stored().size(), 5);
    for (const int left : {4, 2, 1, 0}) {
        desk.press("cmdSubCancel");
        QCOMPARE(desk.stored().size(), left);
        QCOMPARE(desk.the<QTableView>("dgdSub").model()->rowCount(), left);
    }
    desk.press("cmdSubCancel"); // nothing is left to take back
    QCOMPARE(desk.stored().size(), 0);
}

QTEST_MAIN(TestLineTaxes)
#include "tst_line_taxes.moc"

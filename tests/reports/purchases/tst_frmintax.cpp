#include "slips/slip_desk.h"

#include "reports/purchases/frmInList.h"
#include "reports/purchases/frmInTax.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"

#include <QtTest>

#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace
{

// Supplier 9 is taxed on the bill, 10 on delivery.
template <class Screen>
void buy(SlipDesk<Screen> &desk, int id, const QString &date, double amount, int supplier = 9)
{
    desk.shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 備考) "
                  "VALUES (?, ?, ?, ?, 1, 5, NULL)"_s,
                  {id, date, u"I%1"_s.arg(id), supplier});
    desk.shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (?, 'りんご', ?)"_s, {id, amount});
}

template <class Screen>
void find(SlipDesk<Screen> &desk, int taxClass)
{
    desk.driver().box("txtKey1").setText(u"aite%1"_s.arg(taxClass));
    desk.driver().press("Command1");
}

QString figures(ScreenDriver &driver, std::initializer_list<const char *> boxes)
{
    QStringList texts;
    for (const char *box : boxes)
        texts << driver.box(box).text();
    return texts.join(u' ');
}

constexpr auto taxFigures = {"txtCarried", "txtPurchases", "txtPayments", "txtBalance",
                             "txtTax",     "txtUntaxed",   "txtUnbooked"};

} // namespace

class TestFrmInTax : public ScriptedTest
{
    Q_OBJECT

private slots:
    void enteringAndCancelling()
    {
        SlipDesk<reports::frmInTax> desk;
        buy(desk, 1, u"2026-03-31"_s, 500);
        buy(desk, 2, u"2026-04-10"_s, 1999);
        find(desk, 1);
        ScreenDriver &driver = desk.driver();
        QCOMPARE(figures(driver, taxFigures), u"500 1,999 0 2,499 0 1,999 99"_s);
        QCOMPARE(driver.box("txtKingaku").text(), u"99"_s);
        QCOMPARE(driver.cursor(), u"txtKingaku"_s);
        QCOMPARE(driver.enabled({"Frame1", "Frame2", "cmdNext", "cmdMasterCancel"}), u"Frame1 Frame2"_s);

        driver.leave("txtKingaku"); // Enter takes the suggestion
        QCOMPARE(desk.headers().last(), u"I3|2026-04-01|9"_s);
        QCOMPARE(desk.lines().last(), u"3|消費税|-|-|-|-|99"_s);
        QCOMPARE(figures(driver, taxFigures), u"500 2,098 0 2,598 99 1,999 0"_s);
        QCOMPARE(driver.enabled({"Frame1", "Frame2", "cmdNext", "cmdMasterCancel"}),
                 u"cmdNext cmdMasterCancel"_s);

        ui::prompts::expectAskCautiously(u"表示中のレコードを削除します。よろしいですか。"_s, false,
                                         u"伝票 I3　消費税 99 円"_s);
        driver.press("cmdMasterCancel");
        QCOMPARE(desk.lines().size(), 3);
        ui::prompts::expectAskCautiously(u"表示中のレコードを削除します。よろしいですか。"_s, true,
                                         u"伝票 I3　消費税 99 円"_s);
        driver.press("cmdMasterCancel");
        QCOMPARE(desk.headers(), (QStringList{u"I1|2026-03-31|9"_s, u"I2|2026-04-10|9"_s}));
        QCOMPARE(desk.lines().size(), 2);
        QCOMPARE(driver.box("txtKingaku").text(), u"99"_s);
    }

    // Another program has deleted the slip, and its key went to another slip.
    void cancellingSparesOthersSlips()
    {
        SlipDesk<reports::frmInTax> desk;
        buy(desk, 1, u"2026-04-10"_s, 1000);
        find(desk, 1);
        desk.driver().leave("txtKingaku");
        desk.shop.run(u"DELETE FROM 入出庫マスター WHERE ID = 2"_s);
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE ID = 2"_s);
        buy(desk, 2, u"2026-04-11"_s, 50);
        ui::prompts::expectAskCautiously(u"表示中のレコードを削除します。よろしいですか。"_s, true,
                                         u"伝票 I2　消費税 50 円"_s);
        ui::prompts::expectInform(
            u"伝票 I2 はほかのプログラムで変更または削除されたため、取り消しませんでした。"_s);
        desk.driver().press("cmdMasterCancel");
        QCOMPARE(desk.headers().size(), 2);
        QCOMPARE(desk.lines().size(), 2);
        desk.driver().press("cmdNext");
        QCOMPARE(desk.driver().cursor(), u"txtKey1"_s);
    }

    void theBoxRestrictsTheSearch()
    {
        SlipDesk<reports::frmInTax> desk;
        auto &box = desk.driver().the<QCheckBox>("Check1");
        QCOMPARE(box.text(), u"請求時に消費税を計算する仕入先を検索"_s);
        const auto found = [&](const QString &key) {
            desk.driver().box("txtKey1").setText(key);
            desk.driver().press("Command1");
            return desk.driver().box("Text1").text();
        };
        QCOMPARE(found(u"aite"_s), u"9"_s);
        box.setChecked(false);
        QCOMPARE(found(u"aite"_s), u"10"_s);
        desk.shop.run(u"UPDATE 仕入先 SET 消費税区分 = NULL WHERE 仕入先ID = 10"_s); // counts as 0
        QCOMPARE(found(u"aite"_s), u"10"_s);
        QCOMPARE(desk.driver().box("txtTaxK").text(), u"0"_s);
        ui::prompts::expectInform(u"検索した仕入先は見つかりませんでした。"_s);
        QCOMPARE(found(u"aite1"_s), QString());
        ui::prompts::expectInform(u"検索する条件を入力してください。"_s);
        found(u"　"_s);
    }

    void amounts_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("told");
        QTest::addColumn<QString>("stored"); // empty: refused
        QTest::newRow("full width") << u"１，２３４"_s << u""_s << u"1234"_s;
        QTest::newRow("half to even") << u"0.00005"_s
                                      << u"消費税が０円のため、伝票を保存しませんでした。"
                                         "金額を入力し直してください。"_s
                                      << u""_s;
        QTest::newRow("empty") << u""_s << u"消費税が入力されていません。"_s << u""_s;
        QTest::newRow("blank") << u"　"_s << u"消費税が入力されていません。"_s << u""_s;
        QTest::newRow("exponent") << u"1e308"_s << u"金額には数字を入力してください。"_s << u""_s;
        QTest::newRow("too great")
            << u"1000000000000"_s
            << u"金額が大きすぎるため、計算できません。９０００億円以内になるように入力してください。"_s
            << u""_s;
        QTest::newRow("minus") << u"-50"_s << u"金額がマイナスです。よろしいですか。"_s << u"-50"_s;
    }
    void amounts()
    {
        QFETCH(QString, typed);
        QFETCH(QString, told);
        QFETCH(QString, stored);
        SlipDesk<reports::frmInTax> desk;
        find(desk, 1);
        desk.driver().box("txtKingaku").setText(typed);
        if (told.endsWith(u"よろしいですか。"_s))
            ui::prompts::expectAsk(told, true);
        else if (!told.isEmpty())
            ui::prompts::expectInform(told);
        desk.driver().press("cmdSubAdd");
        QCOMPARE(desk.shop.rows(u"SELECT 金額 FROM 入出庫サブ"_s).join(u' '), stored);
        QCOMPARE(desk.headers().isEmpty(), stored.isEmpty());
        desk.driver().box("txtKingaku").clear();
    }

    void nobodyChosen()
    {
        SlipDesk<reports::frmInTax> desk;
        ui::prompts::expectInform(u"仕入先が選択されていません。"_s);
        desk.driver().press("cmdSubAdd");
        QCOMPARE(desk.driver().cursor(), u"txtKey1"_s);
    }

    void numbersTypedByHandBeginWithI()
    {
        SlipDesk<reports::frmInTax> desk;
        desk.shop.workspace.panel.automaticNumbers = false;
        buy(desk, 1, u"2026-04-10"_s, 1000);
        find(desk, 1);
        QCOMPARE(desk.driver().cursor(), u"txtDenNo"_s);
        for (const auto &[typed, told] : {std::pair(u"A7"_s, u"伝票番号に誤りがあります。"_s),
                                          std::pair(u"I1"_s, u"伝票番号が重複しています。"_s)}) {
            ui::prompts::expectInform(
                told, typed == u"A7"_s
                          ? u"この画面の伝票番号は、半角の大文字「I」で始めてください（例：I100）。"_s
                          : QString());
            desk.driver().type("txtDenNo", typed);
            desk.driver().leave("txtDenNo");
            QCOMPARE(desk.driver().cursor(), u"txtDenNo"_s);
        }
        desk.driver().type("txtDenNo", u"I-tax"_s);
        desk.driver().leave("txtDenNo");
        desk.driver().press("cmdSubAdd");
        QCOMPARE(desk.headers().last(), u"I-tax|2026-04-01|9"_s);
    }

    // Last month's tax is entered under a day of last month, once.
    void datesAndTheSecondEntry()
    {
        SlipDesk<reports::frmInTax> desk;
        buy(desk, 1, u"2026-03-10"_s, 1000);
        auto &from = desk.driver().the<QDateEdit>("DTPicker1");
        auto &to = desk.driver().the<QDateEdit>("DTPicker2");
        QCOMPARE(to.date(), QDate(2026, 4, 30));
        from.setDate({2026, 3, 1});
        to.setDate({2026, 3, 31});
        auto &date = desk.driver().the<QDateEdit>("DTPicker3");
        QCOMPARE(date.date(), QDate(2026, 3, 31));
        find(desk, 1);
        // What is proposed belongs to the period that is shown.
        QCOMPARE(desk.driver().box("txtKingaku").text(), u"50"_s);
        to.setDate({2026, 2, 28});
        QCOMPARE(desk.driver().box("txtKingaku").text(), QString());
        from.setDate({2026, 2, 1});
        QCOMPARE(desk.driver().box("txtUnbooked").text(), u"0"_s);
        to.setDate({2026, 3, 31});
        from.setDate({2026, 3, 1});
        QCOMPARE(desk.driver().box("txtKingaku").text(), u"50"_s);
        date.setDate({2026, 4, 1});
        ui::prompts::expectAsk(u"日付が期間の外にあります。この日付で入力しますか。"_s, false);
        desk.driver().press("cmdSubAdd");
        date.setDate({2026, 3, 31});
        desk.driver().press("cmdSubAdd");
        desk.driver().press("cmdNext");
        find(desk, 1);
        QCOMPARE(desk.driver().box("txtKingaku").text(), QString());
        desk.driver().box("txtKingaku").setText(u"1"_s);
        ui::prompts::expectAsk(u"この期間の消費税はすでに計上されています。さらに入力しますか。"_s, false);
        desk.driver().press("cmdSubAdd");
        QCOMPARE(desk.headers().size(), 2);
        ui::prompts::expectAsk(u"入力途中の消費税は、まだ保存されていません。閉じますか。"_s, true);
        QVERIFY(desk.screen().close());
        from.setDate({2026, 5, 1});
        ui::prompts::expectInform(
            u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s);
        desk.driver().press("cmdMasterUpdate");
    }

    void monthlyList()
    {
        SlipDesk<reports::frmInList> desk;
        buy(desk, 1, u"2026-03-31"_s, 500);
        buy(desk, 2, u"2026-04-30"_s, 1999);
        buy(desk, 3, u"2026-04-30"_s, 7, 77);
        ScreenDriver &driver = desk.driver();
        auto &grid = driver.the<QAbstractItemView>("MSFlexGrid1");
        QTRY_COMPARE(grid.model()->rowCount(), 2);
        QStringList heading;
        for (int column = 0; column < grid.model()->columnCount(); ++column)
            heading << grid.model()->headerData(column, Qt::Horizontal).toString();
        QCOMPARE(heading.join(u'\t'), u"仕入先\t前回仕入額\t支払額\t繰越金額\t仕入金額\t残高"_s);
        const auto boxes = {"Text1",      "txtNouhinsaki1", "txtPrevious", "txtPurchases", "txtPayments",
                            "txtBalance", "txtUnbooked",    "txtUntaxed",  "txtTax",       "txtCarried"};
        QCOMPARE(figures(driver, boxes), u"9 aite1 500 1,999 0 2,499 99 1,999 0 500"_s);
        driver.press("cmdMasterUpdate");
        QTest::keyClick(&grid, Qt::Key_Down);
        QCOMPARE(figures(driver, {"Text1", "txtNouhinsaki1", "txtBalance"}), u"77 (削除済み) ID 77 7"_s);
        QCOMPARE(figures(driver, {"txtTotalPrevious", "txtTotalPurchases", "txtTotalBalance"}),
                 u"500 2,006 2,506"_s);
        driver.the<QCheckBox>("Check1").click();
        QCOMPARE(grid.model()->rowCount(), 4);
        driver.the<QDateEdit>("DTPicker2").setDate({2026, 4, 29});
        QCOMPARE(driver.the<QLabel>("lblMessage").text(),
                 u"表示中の集計は 2026/04/01～2026/04/30 のものです。再集計を押してください。"_s);

        desk.shop.run(u"DELETE FROM 入出庫マスター"_s);
        ui::prompts::expectInform(u"該当するデータが見つかりませんでした。"_s);
        driver.press("cmdMasterUpdate");
    }

    // The columns come with such purchases and go without them.
    void monthlyListOfOneNotRegistered()
    {
        SlipDesk<reports::frmInList> desk;
        desk.shop.run(u"UPDATE 仕入先 SET 登録 = 2 WHERE 仕入先ID = 8"_s);
        buy(desk, 1, u"2026-03-31"_s, 500);
        buy(desk, 2, u"2026-04-30"_s, 10'500, 8);
        ScreenDriver &driver = desk.driver();
        auto &grid = driver.the<QAbstractItemView>("MSFlexGrid1");
        auto &total = driver.box("txtTotalDeductible");
        const auto row = [&grid](int line) {
            QStringList cells;
            for (int column = 4; column < grid.model()->columnCount(); ++column)
                cells << grid.model()->index(line, column).data().toString();
            return cells.join(u'|');
        };
        QTRY_COMPARE(row(0), u"10,500|10,500|80%|400"_s);
        QCOMPARE(row(1), u"0|500||"_s);
        QVERIFY(total.isVisible());
        QCOMPARE(total.text(), u"400"_s);
        driver.the<QDateEdit>("DTPicker1").setDate({2026, 3, 1});
        driver.the<QDateEdit>("DTPicker2").setDate({2026, 3, 31});
        driver.press("cmdMasterUpdate");
        QCOMPARE(row(0), u"500|500"_s);
        QVERIFY(!total.isVisible());
        driver.the<QDateEdit>("DTPicker2").setDate({2026, 4, 30});
        driver.press("cmdMasterUpdate");
        QCOMPARE(row(0), u"10,500|10,500|80%|400"_s);
    }
};

QTEST_MAIN(TestFrmInTax)
#include "tst_frmintax.moc"

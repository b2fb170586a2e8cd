#include "slips/correction/correction_screen_desk.h"

#include "support/scripted_test.h"
#include "ui/prompts.h"

using namespace slips;
using Desk = CorrectionDesk;

// Slips that were left open, or without their tax line, are closed here.
class TestCorrectionClosing : public ScriptedTest
{
    Q_OBJECT

private slots:
    void aSlipLeftOpenIsClosedHere()
    {
        Desk desk;
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE 商品名 = '消費税'"_s);
        desk.shop.run(u"UPDATE 入出庫マスター SET 完了 = 0 WHERE ID = 9"_s);
        desk.driver.press("cmdAll");
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 0, u"備考"_s));
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 1, u"備考"_s));
        const auto *button = &desk.driver.the("cmdClose");
        QVERIFY(desk.message().contains(u"この伝票は閉じられていません。消費税 100 円が"_s));
        QVERIFY(button->isEnabled());
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 0, u"備考"_s));
        QVERIFY(!desk.message().contains(u"閉じられていません"_s));
        QVERIFY(!button->isEnabled());
        desk.headers().setCurrentIndex(Desk::cell(desk.headers(), 1, u"備考"_s));
        desk.driver.press("cmdClose");
        QCOMPARE(desk.shop.rows(u"SELECT 商品名, 金額 FROM 入出庫サブ WHERE ID = 9 ORDER BY 明細ID"_s),
                 (QStringList{u"りんご|2000"_s, u"消費税|100"_s}));
        QCOMPARE(desk.lines().model()->rowCount(), 2);
        QVERIFY(!desk.message().contains(u"閉じられていません"_s));
        QVERIFY(!button->isEnabled());
    }

    // The tax goes by the rate that the file has and the screen shows, after another look at it.
    void aSlipIsClosedAsItIsShown()
    {
        Desk desk;
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE 商品名 = '消費税'"_s);
        desk.shop.run(u"UPDATE 入出庫マスター SET 完了 = 0 WHERE ID = 9"_s);
        desk.driver.press("cmdAll");
        QVERIFY(desk.message().contains(u"消費税 100 円が"_s));
        desk.shop.run(u"UPDATE 入出庫マスター SET 消費税率 = 10 WHERE ID = 9"_s);
        ui::prompts::expectInform({});
        desk.driver.press("cmdClose");
        QCOMPARE(desk.shop.value(u"SELECT COUNT(*) FROM 入出庫サブ WHERE ID = 9"_s).toInt(), 1);
        QVERIFY(desk.message().contains(u"消費税 200 円が"_s));
        desk.driver.press("cmdClose");
        QCOMPARE(desk.shop.rows(u"SELECT 商品名, 金額 FROM 入出庫サブ WHERE ID = 9"_s),
                 (QStringList{u"りんご|2000"_s, u"消費税|200"_s}));
    }

    // Closing goes by the class that the screen shows, after another look at it.
    void aSlipIsNotClosedForAnotherClass()
    {
        Desk desk;
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE 商品名 = '消費税'"_s);
        desk.shop.run(u"UPDATE 入出庫マスター SET 完了 = 0 WHERE ID = 9"_s);
        desk.driver.press("cmdAll");
        QVERIFY(desk.message().contains(u"消費税 100 円が"_s));
        desk.shop.run(u"UPDATE 納品先 SET 消費税区分 = 2 WHERE 納品先ID = 2"_s);
        ui::prompts::expectInform({});
        desk.driver.press("cmdClose");
        QCOMPARE(desk.stored(), QStringList{u"りんご|2|2000"_s});
        QVERIFY(!desk.message().contains(u"消費税 100 円が"_s));
        desk.driver.press("cmdClose");
        QCOMPARE(desk.shop.rows(u"SELECT 完了, 内税 FROM 入出庫マスター WHERE ID = 9"_s),
                 QStringList{u"1|1"_s});
        QCOMPARE(desk.stored(), QStringList{u"りんご|2|2000"_s});
    }

    // What made it one to be closed was dropped.
    void aSlipThatNeedsNoClosingIsNotTouched()
    {
        Desk desk;
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE 商品名 = '消費税'"_s);
        desk.shop.run(u"UPDATE 入出庫マスター SET 完了 = 1, 内税 = 1, 版 = 7 WHERE ID = 9"_s);
        desk.driver.press("cmdAll");
        desk.type(desk.headers(), 1, u"内税"_s, u"外税"_s);
        expectDoubt(drop);
        desk.driver.press("cmdClose");
        QCOMPARE(desk.shop.rows(u"SELECT 内税, 版 FROM 入出庫マスター WHERE ID = 9"_s),
                 QStringList{u"1|7"_s});
    }

    void aClosedSlipWithoutItsTaxIsMended()
    {
        Desk desk;
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE ID = 9 AND 商品名 = '消費税'"_s);
        desk.shop.run(u"UPDATE 入出庫マスター SET 完了 = 1, 内税 = 0 WHERE ID = 9"_s);
        desk.driver.press("cmdAll");
        const QString missing = u"消費税の行がありません。いまの明細では 100 円です。"_s;
        QVERIFY(desk.message().contains(missing));
        // Its prices include the tax, says the clerk.
        desk.type(desk.headers(), 1, u"内税"_s, u"税込"_s);
        QVERIFY(!desk.message().contains(missing));
        QVERIFY(!desk.driver.the("cmdClose").isEnabled());
        desk.driver.press("cmdUndo");
        QVERIFY(desk.message().contains(missing));
        desk.driver.press("cmdClose");
        QCOMPARE(desk.shop.rows(u"SELECT 商品名, 金額 FROM 入出庫サブ WHERE ID = 9"_s),
                 (QStringList{u"りんご|2000"_s, u"消費税|100"_s}));
        QVERIFY(desk.message().isEmpty());
    }
};

QTEST_MAIN(TestCorrectionClosing)
#include "tst_correction_closing.moc"

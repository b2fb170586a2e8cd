// The screens that share the sales screen's cycle: purchase, stocktake, estimate. What they share is tested
// there; here is what each one does differently.
#include "slips/slip_desk.h"

#include "slips/entry/frmIn.h"
#include "slips/entry/frmMitsumori.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

// Typed before a line, changed after it, and not carried into the next slip; 備考 stays empty.
template <class Screen>
void keepsRemark(SlipDesk<Screen> &desk)
{
    const QString kept = u"SELECT 摘要, 備考 FROM 入出庫マスター ORDER BY ID"_s;
    desk.open(0);
    desk.driver().type("txtMemo", u"箱つぶれ、返品予定"_s);
    desk.driver().leave("txtMemo");
    QCOMPARE(desk.shop.rows(kept), QStringList{u"箱つぶれ、返品予定|-"_s});
    desk.goods(u"3"_s, u"1,980"_s);
    desk.driver().type("txtMemo", u"箱つぶれ"_s);
    desk.driver().press("cmdNext");
    QCOMPARE(desk.shop.rows(kept), QStringList{u"箱つぶれ|-"_s});
    desk.open(0);
    desk.goods(u"1"_s, u"500"_s);
    desk.driver().press("cmdNext");
    QCOMPARE(desk.shop.rows(kept), (QStringList{u"箱つぶれ|-"_s, u"-|-"_s}));
}

} // namespace

class TestPurchaseSlips : public ScriptedTest
{
    Q_OBJECT

private slots:
    void purchaseOfEachClass_data()
    {
        QTest::addColumn<int>("taxClass");
        QTest::addColumn<bool>("inclusive"); // the box, as the class sets it
        QTest::addColumn<QString>("shownTax");
        QTest::addColumn<QString>("taxLine");
        QTest::newRow("on delivery") << 0 << false << u"99"_s << u"1|消費税|-|-|-|-|99"_s;
        QTest::newRow("on bill") << 1 << false << u""_s << u""_s;
        // No included tax is shown here, as it is on a sale.
        QTest::newRow("included") << 2 << true << u""_s << u""_s;
    }
    void purchaseOfEachClass()
    {
        QFETCH(int, taxClass);
        SlipDesk<slips::frmIn> desk;
        desk.open(taxClass);
        QTEST(desk.driver().the<QCheckBox>("Check1").isChecked(), "inclusive");
        desk.goods(u"1"_s, u"1999"_s);
        QTEST(desk.driver().box("Text2").text(), "shownTax");
        desk.driver().press("cmdNext");
        QCOMPARE(desk.headers(), QStringList{u"I1|2026-04-01|%1"_s.arg(10 - taxClass)});
        QTEST(desk.lines().mid(1).join(u'\n'), "taxLine");
        // A purchase does not bring its supplier up in any list.
        QCOMPARE(desk.shop.value(u"SELECT COUNT(*) FROM 納品先 WHERE 更新日 <> '2020-01-01'"_s).toInt(), 0);
    }

    // Quietly, beside the class of tax, and by the date of the slip.
    void remarksOnSuppliersWithoutRegistration()
    {
        SlipDesk<slips::frmIn> desk;
        desk.shop.run(u"UPDATE 仕入先 SET 登録 = 2 WHERE 仕入先ID = 10"_s);
        desk.shop.run(u"UPDATE 仕入先 SET 登録 = 1, 登録終了日 = '2026-09-30' WHERE 仕入先ID = 9"_s);
        auto &date = desk.driver().the<QDateEdit>("DTPicker1");
        auto &remark = desk.driver().the<QLabel>("lblRegistered");
        const auto choose = [&](int taxClass) {
            desk.driver().box("txtKey1").setText(u"aite%1"_s.arg(taxClass));
            desk.driver().press("Command1");
            return remark.text();
        };
        QCOMPARE(remark.text(), QString());
        QCOMPARE(choose(0), u"登録事業者ではありません（経過措置 80%）"_s);
        date.setDate({2026, 10, 1});
        QCOMPARE(remark.text(), u"登録事業者ではありません（経過措置 70%）"_s);
        QCOMPARE(choose(1), u"登録の期間外です（経過措置 70%）"_s);
        date.setDate({2026, 9, 30});
        QCOMPARE(remark.text(), QString());
        QCOMPARE(choose(2), QString());
        date.setDate({2031, 10, 1});
        QCOMPARE(choose(0), u"登録事業者ではありません（仕入税額控除なし）"_s);
        desk.driver().press("cmdMasterUpdate");
        desk.goods(u"1"_s, u"1999"_s);
        desk.driver().press("cmdNext");
        QCOMPARE(remark.text(), QString());
        QCOMPARE(desk.headers(), QStringList{u"I1|2031-10-01|10"_s});
    }

    void suppliersComeByKey()
    {
        SlipDesk<slips::frmIn> desk;
        desk.driver().box("txtKey1").setText(u"aite"_s);
        desk.driver().press("Command1");
        QCOMPARE(desk.driver().box("txtNouhinsaki1").text(), u"aite2"_s);
        QCOMPARE(desk.driver().box("Text1").text(), u"8"_s);
    }

    void questionAboutThePriceKeepsItsDoubledStop()
    {
        SlipDesk<slips::frmIn> desk;
        desk.open(0);
        ui::prompts::expectAskCautiously(u"単価が入力されていません。。よろしいですか。"_s, true);
        desk.goods(u"2"_s, u""_s);
        QCOMPARE(desk.lines(), QStringList{u"1|りんご||2||0|0"_s});
    }

    void missingSupplierIsTold()
    {
        SlipDesk<slips::frmIn> desk;
        ui::prompts::expectInform(u"仕入先が選択されていません。"_s);
        desk.driver().press("cmdMasterUpdate");
        ui::prompts::expectAsk(u"検索した仕入先は見つかりませんでした。\n新規に入力しますか？"_s, false);
        desk.driver().box("txtKey1").setText(u"nobody"_s);
        desk.driver().press("Command1");
        desk.driver().box("txtKey1").setText(u"aite0"_s);
        desk.driver().press("Command1");
        desk.shop.run(u"DELETE FROM 仕入先"_s);
        ui::prompts::expectInform(
            u"選択した仕入先は削除されているため、伝票を保存できませんでした。仕入先を検索し直してください。"_s);
        desk.driver().press("cmdMasterUpdate");
        QCOMPARE(desk.driver().cursor(), u"txtKey1"_s);
        QCOMPARE(desk.headers(), QStringList());
    }

    void numbersTypedByHand()
    {
        SlipDesk<slips::frmIn> desk;
        desk.shop.workspace.panel.automaticNumbers = false;
        desk.driver().box("txtKey1").setText(u"aite0"_s);
        desk.driver().press("Command1");
        ui::prompts::expectInform(u"伝票番号に誤りがあります。"_s,
                                  u"この画面の伝票番号は、半角の大文字「I」で始めてください（例：I100）。"_s);
        desk.driver().type("txtDenNo", u"O1"_s);
        desk.driver().leave("txtDenNo");
        QCOMPARE(desk.driver().cursor(), u"txtDenNo"_s);
        desk.driver().type("txtDenNo", u"I-7"_s);
        desk.driver().leave("txtDenNo");
        desk.driver().press("cmdMasterUpdate");
        QCOMPARE(desk.headers(), QStringList{u"I-7|2026-04-01|10"_s});
    }

    void stocktakeHasNoTax()
    {
        SlipDesk<slips::frmTana> desk;
        desk.open(0);
        desk.goods(u"3"_s, u"1999"_s);
        QVERIFY(!desk.driver().the("Text2").isVisible());
        desk.driver().press("cmdNext");
        QCOMPARE(desk.headers(), QStringList{u"T1|2026-04-01|10"_s});
        QCOMPARE(desk.lines().size(), 1);
        QVERIFY(desk.screen().close());
    }

    void theRemarkIsKeptWithTheSlip()
    {
        SlipDesk<slips::frmIn> purchase;
        SlipDesk<slips::frmTana> stocktake;
        SlipDesk<slips::frmMitsumori> estimate;
        keepsRemark(purchase);
        keepsRemark(stocktake);
        keepsRemark(estimate);
    }

    void estimateIsRefusedWithoutPrice()
    {
        SlipDesk<slips::frmMitsumori> desk;
        desk.open(0);
        ui::prompts::expectInform(u"単価が入力されていません。"_s);
        desk.goods(u"1"_s, u""_s);
        QCOMPARE(desk.lines(), QStringList());
        QCOMPARE(desk.driver().cursor(), u"txtTanka"_s);
        desk.goods(u"2.5"_s, u"101"_s);
        QCOMPARE(desk.driver().box("Text2").text(), u"12"_s);
        desk.driver().press("cmdNext");
        QCOMPARE(desk.headers(), QStringList{u"M1|2026-04-01|1"_s});
        QCOMPARE(desk.lines().last(), u"1|消費税|-|-|-|-|12"_s);
        QCOMPARE(desk.shop.value(u"SELECT 更新日 FROM 納品先 WHERE 納品先ID = 1"_s).toString(),
                 u"2026-04-01"_s);
    }

    void estimateNumbersBeginAsSalesNumbersDo()
    {
        SlipDesk<slips::frmMitsumori> desk;
        desk.shop.workspace.panel.automaticNumbers = false;
        desk.driver().box("txtKey1").setText(u"aite0"_s);
        desk.driver().press("Command1");
        ui::prompts::expectInform(u"伝票番号に誤りがあります。"_s,
                                  u"この画面の伝票番号は、半角の大文字「I」で始めてください（例：I100）。"_s);
        desk.driver().type("txtDenNo", u"M1"_s);
        desk.driver().leave("txtDenNo");
        desk.driver().type("txtDenNo", u"I1"_s);
        ui::prompts::expectAskCautiously({}, true);
        desk.driver().press("cmdMasterUpdate");
        QCOMPARE(desk.headers().size(), 1);
    }
};

QTEST_MAIN(TestPurchaseSlips)
#include "tst_purchase_slips.moc"

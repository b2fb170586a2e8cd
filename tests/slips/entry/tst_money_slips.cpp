#include "book/balance.h"
#include "slips/slip_desk.h"

#include "book/slip_store.h"
#include "slips/entry/money_slips.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto buttons = {"Frame2", "Frame1", "cmdSubAdd", "cmdNext", "cmdMasterCancel"};

} // namespace

class TestMoneySlips : public ScriptedTest
{
    Q_OBJECT

private slots:
    void lifeOfAReceipt()
    {
        SlipDesk<slips::frmOutReceipt> desk;
        QCOMPARE(desk.driver().box("txtDenNo").text(), u"R"_s);
        QCOMPARE(desk.driver().enabled(buttons), u"Frame2"_s);
        desk.open(0);
        QCOMPARE(desk.driver().enabled(buttons), u"Frame1 cmdSubAdd"_s);
        QCOMPARE(desk.driver().cursor(), u"cmbShohin"_s);
        desk.money(0, 2, u"１２，３４５"_s);
        QCOMPARE(desk.driver().enabled(buttons), u"Frame1 cmdSubAdd cmdNext cmdMasterCancel"_s);
        // A fee lowers the receivable as the money itself does; the means may be left out.
        desk.money(1, -1, u"440"_s);
        desk.driver().press("cmdNext");
        QCOMPARE(desk.driver().enabled(buttons), u"Frame2"_s);
        QCOMPARE(desk.headers(), QStringList{u"R1|2026-04-01|1"_s});
        QCOMPARE(desk.lines(),
                 (QStringList{u"1|入　金|銀行振込|-|-|-|12345"_s, u"1|振込手数料||-|-|-|440"_s}));
        QCOMPARE(balanceOf(desk.shop.connection, book::Party::Customer, 1), -12785.0);
        // Money does not bring a customer up in the lists.
        QCOMPARE(desk.shop.value(u"SELECT 更新日 FROM 納品先 WHERE 納品先ID = 1"_s).toString(),
                 u"2020-01-01"_s);
    }

    void paymentKeepsAnEmptyUnit()
    {
        SlipDesk<slips::frmInPay> desk;
        desk.open(2);
        QCOMPARE(desk.driver().box("txtTaxK").text(), u"2"_s);
        desk.money(0, 4, u"1000"_s);
        desk.driver().press("cmdNext");
        QCOMPARE(desk.headers(), QStringList{u"P1|2026-04-01|8"_s});
        QCOMPARE(desk.lines(), QStringList{u"1|支　払|現　金|-||-|1000"_s});
    }

    void amounts_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored"); // empty: refused
        QTest::newRow("plain") << u"1000"_s << u"1000"_s;
        QTest::newRow("half to even, down") << u"0.00005"_s << u"0"_s;
        QTest::newRow("half to even, up") << u"0.00015"_s << u"0.0002"_s;
        QTest::newRow("half to even among yen") << u"12345.00005"_s << u"12345"_s;
        QTest::newRow("five decimals") << u"1.23456"_s << u"1.2346"_s;
        QTest::newRow("great") << u"899999999999.1234"_s << u"899999999999.123"_s;
        QTest::newRow("too great") << u"1000000000000"_s << u""_s;
        QTest::newRow("exponent") << u"1e308"_s << u""_s;
        QTest::newRow("letters") << u"千円"_s << u""_s;
        QTest::newRow("empty") << u""_s << u""_s;
        QTest::newRow("blank") << u"　"_s << u""_s;
    }
    void amounts()
    {
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        SlipDesk<slips::frmOutReceipt> desk;
        desk.open(0);
        if (stored.isEmpty())
            ui::prompts::expectInform({});
        desk.money(0, 0, typed);
        QCOMPARE(desk.shop.rows(u"SELECT printf('%.15g', 金額) FROM 入出庫サブ"_s).join(u' '), stored);
        if (stored.isEmpty())
            QCOMPARE(desk.driver().cursor(), u"txtKingaku"_s);
    }

    void whatIsMissingIsTold()
    {
        SlipDesk<slips::frmInPay> desk;
        ui::prompts::expectInform(u"仕入先が選択されていません。"_s);
        desk.driver().press("cmdMasterUpdate");
        desk.open(0);
        ui::prompts::expectInform(u"適用が選択されていません。"_s);
        desk.money(-1, 0, u"1000"_s);
        ui::prompts::expectInform(u"金額が入力されていません。"_s);
        desk.money(0, 0, u""_s);
        ui::prompts::expectAskCautiously(u"金額がマイナスです。よろしいですか。"_s, false);
        desk.money(0, 0, u"－500"_s);
        QCOMPARE(desk.lines(), QStringList());
        // The item alone is a line begun, too.
        desk.driver().box("txtKingaku").clear();
        desk.driver().list("cmbKikaku").setCurrentIndex(-1);
        const QString half = u"入力途中の明細は、まだ伝票に入っていません。入れずに進みますか。"_s;
        ui::prompts::expectAsk(half, false);
        QVERIFY(!desk.screen().close());
        // The header stays and comes to nothing.
        ui::prompts::expectAsk(half, true);
        ui::prompts::expectAskHowToLeave(u"伝票 P1 には明細がありません。伝票を取り消しますか。"_s,
                                         ui::prompts::Choice::Discard, ui::prompts::Choice::Cancel);
        QVERIFY(desk.screen().close());
        QCOMPARE(desk.headers().size(), 1);
    }

    // Another program has deleted the slip, and its key went to the next one.
    void theNextSlipOfTheKeyIsSpared_data()
    {
        QTest::addColumn<QByteArray>("button");
        for (const char *button : {"cmdSubAdd", "cmdSubCancel", "cmdNext", "cmdMasterCancel"})
            QTest::newRow(button) << QByteArray(button);
    }
    void theNextSlipOfTheKeyIsSpared()
    {
        QFETCH(QByteArray, button);
        SlipDesk<slips::frmInPay> desk;
        desk.open(0);
        desk.money(0, 0, u"100"_s);
        desk.shop.run(u"UPDATE 入出庫マスター SET 相手先ID = 8"_s);
        desk.shop.run(u"UPDATE 入出庫サブ SET 金額 = 5000"_s);
        if (button == "cmdMasterCancel")
            ui::prompts::expectAsk(u"表示中のレコードを削除します。よろしいですか。"_s, true);
        ui::prompts::expectInform(
            u"伝票 P1 はほかのプログラムで変更または削除されたため、続けて入力できません。"_s);
        if (button == "cmdSubAdd")
            desk.money(0, 0, u"200"_s);
        else
            desk.driver().press(button.constData());
        QCOMPARE(desk.headers(), QStringList{u"P1|2026-04-01|8"_s});
        QCOMPARE(desk.lines(), QStringList{u"1|支　払|約束手形|-||-|5000"_s});
        QCOMPARE(desk.driver().enabled(buttons), u"Frame2"_s);
    }

    void cancelledSlipIsGone()
    {
        SlipDesk<slips::frmOutReceipt> desk;
        desk.open(0);
        desk.money(0, 0, u"500"_s);
        desk.driver().press("cmdSubCancel");
        QCOMPARE(desk.lines(), QStringList());
        desk.money(0, 0, u"600"_s);
        ui::prompts::expectAsk(u"表示中のレコードを削除します。よろしいですか。"_s, true);
        desk.driver().press("cmdMasterCancel");
        QCOMPARE(desk.lines() + desk.headers(), QStringList());
    }

    void numbersTypedByHandBearTheKindsOwnLetter()
    {
        SlipDesk<slips::frmOutReceipt> desk;
        desk.shop.workspace.panel.automaticNumbers = false;
        desk.driver().box("txtKey1").setText(u"aite0"_s);
        desk.driver().press("Command1");
        ui::prompts::expectInform(u"伝票番号に誤りがあります。"_s,
                                  u"この画面の伝票番号は、半角の大文字「R」で始めてください（例：R100）。"_s);
        desk.driver().type("txtDenNo", u"I1"_s);
        desk.driver().leave("txtDenNo");
        desk.driver().type("txtDenNo", u"R-1"_s);
        desk.driver().leave("txtDenNo");
        desk.driver().press("cmdMasterUpdate");
        QCOMPARE(desk.headers().size(), 1);
    }

    void carriedBalances()
    {
        SlipDesk<slips::frmUrikake> receivable;
        receivable.open(0);
        receivable.money(0, -1, u"30000"_s);
        receivable.driver().press("cmdNext");
        QCOMPARE(receivable.headers(), QStringList{u"B1|2026-04-01|1"_s});
        QCOMPARE(receivable.lines(), QStringList{u"1|繰越残高||-|-|-|30000"_s});

        SlipDesk<slips::frmKaikake> payable;
        payable.open(0);
        ui::prompts::expectAskCautiously(u"金額がマイナスです。よろしいですか。"_s, true);
        payable.money(0, -1, u"-20"_s);
        payable.driver().press("cmdNext");
        QCOMPARE(payable.headers(), QStringList{u"A1|2026-04-01|10"_s});
        QCOMPARE(balanceOf(payable.shop.connection, book::Party::Supplier, 10), -20.0);
    }
};

QTEST_MAIN(TestMoneySlips)
#include "tst_money_slips.moc"

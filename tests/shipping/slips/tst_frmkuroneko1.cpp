// Mail-order slips as they are typed all day: whom they go to, what keeps one from being printed, what stays
// for the next one, and what a hurried hand does by accident.
#include "shipping/slips/frmKuroneko1.h"
#include "shipping/slips/shipment_store.h"
#include "slip_entry_desk.h"
#include "support/scripted_test.h"
#include "ui/grid.h"
#include "workspace/settings.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

using namespace Qt::StringLiterals;
namespace keys = workspace::keys;
namespace prompts = ui::prompts;

namespace
{

using Desk = SlipEntryDesk<shipping::frmKuroneko1>;

const QString notPrinted = u"入力した送り状は、まだ印刷されていません。画面を閉じますか。"_s;

// What is always typed on this shop's slips.
void completeGoods(Desk &desk)
{
    desk.hand().choose("dbcKubun", u"通販"_s);
    desk.type("txtHinmei", u"サンふじ 5kg"_s);
}

} // namespace

class TestFrmKuroneko1 : public ScriptedTest
{
    Q_OBJECT

private slots:
    void opensReadyForTheSearch();
    void findsFillsInAndPrints();
    void whatKeepsItFromBeingPrinted();
    void whatTheQueueRefusesIsNotRecorded();
    void thePrinterIsAskedForOnce();
    void enterTwiceAndTheSameSlipAgain();
    void aScannedNumberPrintsNothing();
    void typedConsigneesAreNotWrittenOver();
    void aNewCustomerIsRegisteredFromTheSlip();
    void aTwinIsAskedAbout();
    void closingAsksForWhatWasTyped();
    void remembersCodesRemarksAndItsWindow();
    void aSaleGoesOnToItsParcel();
    void aLongAddressOfTheRegisterIsPrinted();
    void whatTheFormLacksIsToWrite();
};

void TestFrmKuroneko1::opensReadyForTheSearch()
{
    Desk desk;
    QCOMPARE(desk.text("txtName1"), u"有限会社かんばん堂"_s);
    QCOMPARE(desk.text("txtZip"), u"380-0821"_s);
    QCOMPARE(desk.text("txtTel1"), u"026-224-0010"_s);
    QCOMPARE(desk.hand().list("Combo5").currentText(), u"佐川急便"_s);
    QCOMPARE(desk.text("txtDate1"), u"2026/04/01"_s);
    QCOMPARE(desk.hand().cursor(), u"txtKey1"_s);
    desk.hand().key(Qt::Key_Escape); // nothing was typed: nothing is asked
    QVERIFY(!desk.screen().isVisible());
}

void TestFrmKuroneko1::findsFillsInAndPrints()
{
    Desk desk;
    desk.search(u"やまだ"_s); // two of them
    QCOMPARE(desk.hand().cursor(), u"DataGrid1"_s);
    QCOMPARE(desk.text("txtNName1"), QString()); // nobody is taken unseen
    QVERIFY(desk.hand().the<QLabel>("lblMessage").text().startsWith(u"2 件見つかりました。"_s));
    desk.hand().key(Qt::Key_Down);
    desk.hand().key(Qt::Key_Return);
    QCOMPARE(desk.hand().cursor(), u"txtDate2"_s);
    QCOMPARE(desk.text("txtNName2"), u"仕入部"_s);
    desk.type("txtDate2", u"4/3"_s);
    desk.type("Text1", u"３，９８０"_s);
    completeGoods(desk);
    desk.print();
    QCOMPARE(desk.jobs(), std::size_t(1));
    const QString columns = u"発送ID, 受付日, 配達日, 依頼主名1, 依頼主ID, 届先名1, 届先名2, 届先郵便番号, "
                            "届先名キー, 品名, 価格, 発送区分, 発送方法, 納品先ID, 印刷日"_s;
    QCOMPARE(desk.history(columns),
             QStringList(u"1|2026-04-01|2026-04-03|有限会社かんばん堂|-|山田商店|仕入部|530-0001|"
                         "山田商店仕入部|サンふじ 5kg|3980|通販|佐川急便|2|2026-04-01"_s));
    // The next one: who sends and what stay.
    QCOMPARE(desk.hand().cursor(), u"txtKey1"_s);
    for (const char *box : {"txtKey1", "txtNName1", "txtNZip", "txtNTel1", "txtDate2", "txtKDenNo"})
        QCOMPARE(desk.text(box), QString());
    QCOMPARE(desk.text("txtHinmei"), u"サンふじ 5kg"_s);
    QCOMPARE(desk.hand().list("dbcKubun").currentText(), u"通販"_s);
    QCOMPARE(desk.text("txtName1"), u"有限会社かんばん堂"_s);
    desk.now = desk.now.addDays(1); // the screen stood open over night
    desk.search(u"たろう"_s);       // only one: needs no choosing
    QCOMPARE(desk.hand().cursor(), u"txtDate2"_s);
    desk.print();
    QCOMPARE(desk.history(u"受付日"_s).last(), u"2026-04-02"_s);
    QCOMPARE(desk.history(), (QStringList{u"1|山田商店|サンふじ 5kg|2"_s, u"2|山田　太郎|サンふじ 5kg|1"_s}));
}

void TestFrmKuroneko1::whatKeepsItFromBeingPrinted()
{
    Desk desk;
    desk.search(u"はなこ"_s);
    prompts::expectInform(u"発送区分が不正です。"_s);
    desk.print();
    QCOMPARE(desk.hand().cursor(), u"dbcKubun"_s);
    completeGoods(desk);
    prompts::expectInform(u"郵便番号が入力されていません。"_s);
    desk.print();
    QCOMPARE(desk.hand().cursor(), u"txtNZip"_s);
    desk.hand().type("txtNZip", u"９８００８１１"_s);
    desk.hand().box("txtDate2").setFocus();
    desk.hand().type("txtDate2", u"4/"_s); // and straight to the button
    prompts::expectInform(u"配達予定日「4/」は日付として読み取れません。\n"
                          "2026/4/1、4/1、R8.4.1 のように入力してください。"_s);
    desk.print();
    QCOMPARE(desk.hand().cursor(), u"txtDate2"_s);
    desk.type("txtDate2", u"3/30"_s);
    prompts::expectAskCautiously(u"配達予定日（2026/03/30）が受付日（2026/04/01）より前です。\n"
                                 "配達予定日（2026/03/30）が今日（2026/04/01）より前です。\n"
                                 "このまま印刷しますか。"_s,
                                 false);
    desk.print();
    desk.type("txtDate2", u""_s);
    desk.hand().type("txtNName1", u"佐々木　花子と申しますがお届けの際は玄関先までお願い致します"_s);
    prompts::expectInform(u"このテキストは全角で２２文字、半角で４４文字以内の制限があります。"_s,
                          u"お届け先 お届け先名１：いまは全角で 30 文字分あります。"_s);
    desk.print();
    QCOMPARE(desk.jobs(), std::size_t(0));
    QCOMPARE(desk.history(), QStringList());
    desk.run(u"DELETE FROM 発送区分"_s); // another program's doing
    prompts::expectInform(u"発送区分が不正です。"_s);
    desk.print();
    QCOMPARE(desk.jobs(), std::size_t(0));
}

void TestFrmKuroneko1::whatTheQueueRefusesIsNotRecorded()
{
    Desk desk;
    completeGoods(desk);
    desk.search(u"たろう"_s);
    desk.isAccepted = false; // left with Esc
    desk.print();
    QCOMPARE(desk.printerAsked, 1);
    QCOMPARE(desk.history(), QStringList());
    desk.isAccepted = true;
    desk.printers->refusal = base::Error{u"プリンタが止まっています。"_s};
    prompts::expectInform(u"プリンタが止まっています。"_s);
    desk.print();
    QCOMPARE(desk.history(), QStringList());
    QCOMPARE(desk.text("txtNName1"), u"山田　太郎"_s); // still there, to be printed
    desk.printers->refusal.reset();
    desk.print();
    QCOMPARE(desk.history(), QStringList(u"1|山田　太郎|サンふじ 5kg|1"_s));
}

void TestFrmKuroneko1::thePrinterIsAskedForOnce()
{
    Desk desk;
    desk.screen().setPrinterSettings(
        [&](QWidget *) { desk.settings.write(keys::kuroPrinterName, u"DOT"_s); });
    completeGoods(desk);
    for (const char16_t *name : {u"たろう", u"しょうてん"}) {
        desk.search(QString::fromUtf16(name));
        desk.print();
    }
    QCOMPARE(desk.printerAsked, 1);
    desk.hand().press("LblPrinterName");
    QCOMPARE(desk.hand().the<QPushButton>("LblPrinterName").text(), u"DOT"_s);
    desk.search(u"たろう"_s);
    prompts::expectAskCautiously({}, true); // the same one again
    desk.print();
    QCOMPARE(desk.printerAsked, 2);
    QCOMPARE(desk.printers->given.back().settings.queue, u"DOT"_s);
}

void TestFrmKuroneko1::enterTwiceAndTheSameSlipAgain()
{
    Desk desk;
    completeGoods(desk);
    desk.search(u"たろう"_s);
    desk.hand().the("Command2").setFocus();
    desk.hand().key(Qt::Key_Return);
    prompts::expectInform(u"検索する条件を入力してください。"_s);
    desk.hand().key(Qt::Key_Return); // the hand was faster
    QCOMPARE(desk.jobs(), std::size_t(1));
    prompts::expectInform(u"郵便番号が入力されていません。"_s);
    desk.print();
    desk.search(u"たろう"_s);
    const QString again = u"同じお届け先・品名の送り状が、この受付日ですでに印刷されています（発送ID 1）。\n"
                          "このまま印刷しますか。"_s;
    prompts::expectAskCautiously(again, false);
    desk.print();
    QCOMPARE(desk.jobs(), std::size_t(1));
    prompts::expectAskCautiously(again, true);
    desk.print();
    QCOMPARE(desk.history().size(), 2);
}

void TestFrmKuroneko1::aScannedNumberPrintsNothing()
{
    Desk desk;
    completeGoods(desk);
    desk.search(u"たろう"_s);
    desk.hand().box("txtKDenNo").setFocus();
    QTest::keyClicks(&desk.hand().box("txtKDenNo"), u"a123456789013a"_s);
    QTest::keyClick(&desk.hand().box("txtKDenNo"), Qt::Key_Return);
    QCOMPARE(desk.jobs(), std::size_t(0));
    QCOMPARE(desk.text("txtKDenNo"), u"123456789013"_s);
    desk.print();
    QCOMPARE(desk.history(u"送り状番号"_s), QStringList(u"123456789013"_s));
}

void TestFrmKuroneko1::typedConsigneesAreNotWrittenOver()
{
    Desk desk;
    desk.type("txtNName1", u"通りがかりの客"_s);
    prompts::expectAskCautiously(u"入力した「通りがかりの客」を、「検索した納品先」に置き換えますか。"_s,
                                 false);
    desk.search(u"やまだ"_s);
    QCOMPARE(desk.text("txtNName1"), u"通りがかりの客"_s);
    prompts::expectAskCautiously(u"入力した「通りがかりの客」を、「検索した納品先」に置き換えますか。"_s,
                                 true);
    desk.hand().press("Command5");
    QCOMPARE(desk.text("txtNName1"), QString());
    desk.hand().key(Qt::Key_Return);
    QCOMPARE(desk.text("txtNName1"), u"山田　太郎"_s);
    desk.type("txtNTel1", u"03-9999-0000"_s); // corrected by hand, then on in the list
    desk.hand().the<ui::Grid>("DataGrid1").setFocus();
    prompts::expectAskCautiously(u"入力した「山田　太郎」を、「山田商店 仕入部」に置き換えますか。"_s, false);
    desk.hand().key(Qt::Key_Down);
    QCOMPARE(desk.text("txtNTel1"), u"03-9999-0000"_s);
    QVERIFY(desk.hand().cursor() != u"DataGrid1"_s);
    // Over another name it is nobody's parcel.
    completeGoods(desk);
    desk.type("txtNName1", u"山田　花子"_s);
    desk.print();
    QCOMPARE(desk.history(), QStringList(u"1|山田　花子|サンふじ 5kg|-"_s));
    prompts::expectAsk(u"検索したお届け先は見つかりませんでした。\nお届け先を直接入力しますか。"_s, true);
    desk.search(u"いない人"_s);
    QCOMPARE(desk.hand().cursor(), u"txtNName1"_s);
}

// Works the register once it stands.
static void inRegister(const std::function<void(ScreenDriver &)> &work)
{
    QTimer::singleShot(50, qApp, [work] {
        QWidget *editor = QApplication::activeModalWidget();
        QVERIFY(editor && editor->objectName() == u"frmNouhin"_s);
        ScreenDriver hand(editor);
        QTest::qWait(20);
        work(hand);
        static_cast<QDialog *>(editor)->reject();
    });
}

void TestFrmKuroneko1::aNewCustomerIsRegisteredFromTheSlip()
{
    Desk desk;
    prompts::expectInform(u"お届け先の名前が入力されていません。"_s);
    desk.hand().press("Command8");
    desk.type("txtNName1", u"鈴木　一郎"_s);
    desk.type("txtNZip", u"４２０－０８５３"_s);
    desk.type("txtNAddress1", u"静岡市葵区追手町5-1"_s);
    desk.type("txtNTel1", u"０５４－２５４－０００３"_s);
    inRegister([](ScreenDriver &hand) {
        QCOMPARE(hand.box("txtName").text(), u"鈴木　一郎"_s);
        hand.choose("dbcKubun", u"一般"_s);
        hand.press("cmdUpdate");
    });
    desk.hand().press("Command8");
    QCOMPARE(
        desk.rows(
            u"SELECT 納品先ID, 納品先名1, 郵便番号, TEL1, 納品先名キー FROM 納品先 WHERE 納品先ID > 3"_s),
        QStringList(u"4|鈴木　一郎|420-0853|054-254-0003|鈴木一郎  054-254-0003 "_s));
    completeGoods(desk);
    desk.print();
    QCOMPARE(desk.history(), QStringList(u"1|鈴木　一郎|サンふじ 5kg|4"_s));
    desk.search(u"たろう"_s);
    prompts::expectInform(u"このお届け先は、すでに登録されています（納品先 ID 1）。"_s);
    desk.hand().press("Command8");
}

void TestFrmKuroneko1::aTwinIsAskedAbout()
{
    Desk desk;
    desk.type("txtNName1", u"山田 太郎"_s);
    desk.type("txtNTel1", u"０３１２３４５６７８"_s);
    inRegister([](ScreenDriver &hand) {
        hand.choose("dbcKubun", u"一般"_s);
        prompts::expectAskCautiously(u"同じ名前と電話番号の納品先が登録されています。\n"
                                     "ID 1　山田　太郎　03-1234-5678\n別の納品先として登録しますか？"_s,
                                     false);
        hand.press("cmdUpdate");
        hand.press("cmdCancel");
    });
    desk.hand().press("Command8");
    QCOMPARE(desk.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 3);
    QCOMPARE(desk.text("txtNName1"), u"山田 太郎"_s); // what was typed is still there
}

void TestFrmKuroneko1::closingAsksForWhatWasTyped()
{
    Desk desk;
    completeGoods(desk);
    desk.search(u"たろう"_s);
    prompts::expectAskHowToLeave(notPrinted, prompts::Choice::Cancel, prompts::Choice::Cancel);
    desk.hand().key(Qt::Key_Escape);
    QVERIFY(desk.screen().isVisible());
    prompts::expectAskHowToLeave(notPrinted, prompts::Choice::Save, prompts::Choice::Cancel);
    desk.printers->refusal = base::Error{u"紙がありません。"_s};
    prompts::expectInform(u"紙がありません。"_s);
    desk.hand().key(Qt::Key_Escape);
    QVERIFY(desk.screen().isVisible()); // it did not come out
    prompts::expectAskHowToLeave(notPrinted, prompts::Choice::Discard, prompts::Choice::Cancel);
    desk.hand().key(Qt::Key_Escape);
    QVERIFY(!desk.screen().isVisible());
    QCOMPARE(desk.history(), QStringList());
    // One who was only looked up is nothing to be asked about.
    Desk other;
    other.search(u"たろう"_s);
    other.hand().key(Qt::Key_Escape);
    QVERIFY(!other.screen().isVisible());
}

void TestFrmKuroneko1::remembersCodesRemarksAndItsWindow()
{
    Desk desk;
    desk.type("txtCode1", u"０１２－３４５"_s);
    desk.type("txtMemo2", u"ワレモノ注意"_s);
    desk.close();
    QCOMPARE(desk.settings.text(keys::invCode[0]), u"012-345"_s);
    QCOMPARE(desk.settings.text(keys::invMemo[1]), u"ワレモノ注意"_s);
    QCOMPARE(desk.settings.text(keys::kuroWindowState[0]), u"0"_s);
    desk.settings.write(keys::kuroWindowState[0], 2);
    QCOMPARE(desk.text("txtMemo2"), u"ワレモノ注意"_s);
    QVERIFY(desk.screen().isMaximized());
}

void TestFrmKuroneko1::aSaleGoesOnToItsParcel()
{
    Desk desk;
    desk.settings.write(keys::invMemo[0], u"ワレモノ"_s);
    desk.settings.write(keys::invMemo[1], u"天地無用"_s);
    shipping::Shipment sale;
    sale.consignee = {u"山田商店"_s, {}, u"530-0001"_s, u"大阪市北区梅田2-4-9"_s, {}, u"06-6345-0001"_s};
    sale.consigneeId = 2;
    sale.slipId = 77;
    sale.goods = u"ぶどう ほか"_s;
    sale.memo2 = u"伝票番号 O12"_s;
    desk.screen().beginFor(sale);
    QCOMPARE(desk.text("txtName1"), u"有限会社かんばん堂"_s);
    QCOMPARE(desk.text("txtMemo1"), QString()); // may be another customer's
    desk.hand().choose("dbcKubun", u"通販"_s);
    desk.print();
    QCOMPARE(desk.history(u"届先名1, 品名, 備考2, 納品先ID, 伝票ID, 発送方法"_s),
             QStringList(u"山田商店|ぶどう ほか|伝票番号 O12|2|77|佐川急便"_s));
    // The next one has nothing of the sale, and remarks of another day are asked about once.
    QCOMPARE(desk.text("txtHinmei"), QString());
    completeGoods(desk);
    desk.search(u"たろう"_s);
    prompts::expectAskCautiously(u"備考１「ワレモノ」 は、前の送り状のまま残っています。\n"
                                 "備考２「天地無用」 は、前の送り状のまま残っています。\n"
                                 "このまま印刷しますか。"_s,
                                 true);
    desk.print();
    desk.search(u"しょうてん"_s);
    desk.print();
    QCOMPARE(desk.history(u"備考1, 備考2, 伝票ID"_s).mid(1), QStringList(2, u"ワレモノ|天地無用|-"_s));
    desk.close();
    QCOMPARE(desk.settings.text(keys::invMemo[1]), u"天地無用"_s); // the sale's are no usual remarks
}

void TestFrmKuroneko1::aLongAddressOfTheRegisterIsPrinted()
{
    Desk desk;
    const QString address = u"東京都世田谷区世田谷一丁目２番３号世田谷ガーデンヒルズ東館"_s;
    desk.run(u"UPDATE 納品先 SET 住所1 = '%1' WHERE 納品先ID = 1"_s.arg(address));
    completeGoods(desk);
    desk.search(u"たろう"_s);
    desk.type("txtNTel1", u"03-1234-5679"_s); // passes through the addresses
    desk.hand().box("txtNAddress1").setFocus();
    desk.hand().box("txtNAddress2").setFocus();
    desk.print();
    QCOMPARE(desk.history(u"届先住所1"_s), QStringList(address));
}

void TestFrmKuroneko1::whatTheFormLacksIsToWrite()
{
    Desk desk;
    completeGoods(desk);
    desk.search(u"たろう"_s);
    desk.hand().choose("cmbTimeSlot", u"午前中"_s);
    desk.hand().choose("cmbCooling", u"冷蔵"_s);
    desk.hand().the<QSpinBox>("spnParcels").setValue(3);
    const std::pair<const char16_t *, const char16_t *> forms[] = {
        {u"佐川急便", u""},
        {u"宅急便", u"時間帯・クール・個数"},
        {u"ゆうパック", u""},
        {u"オリジナル伝票", u""},
        {u"オリジナル荷札１", u"クール・個数"},
        {u"オリジナル荷札２", u""},
        {u"オリジナル荷札３", u""},
        {u"宛名ラベル", u"時間帯・クール・個数"},
        {u"宅急便　コレクト", u"時間帯・クール・個数"}};
    for (const auto &[form, lacks] : forms) {
        desk.hand().choose("Combo5", QString::fromUtf16(form));
        const QString named = QString::fromUtf16(lacks);
        QCOMPARE(desk.hand().the<QGroupBox>("groupCarrier").title(),
                 named.isEmpty()
                     ? u"配送"_s
                     : u"配送　この用紙には%1は印刷されません。送り状に書き込んでください。"_s.arg(named));
    }
    desk.type("Text1", u"3980"_s);
    desk.print();
    QVERIFY(desk.hand()
                .the<QLabel>("lblMessage")
                .text()
                .endsWith(u"時間帯・クール・個数は書き込んでください。"_s));
}

QTEST_MAIN(TestFrmKuroneko1)
#include "tst_frmkuroneko1.moc"

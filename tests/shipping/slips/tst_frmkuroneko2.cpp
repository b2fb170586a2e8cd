// Gifts: one who sends and many whom he sends to, also those of other years.
#include "shipping/slips/frmKuroneko2.h"
#include "shipping/slips/sent_consignees.h"
#include "shipping/slips/shipment_store.h"
#include "slip_entry_desk.h"
#include "support/scripted_test.h"
#include "ui/report_grid.h"
#include "workspace/settings.h"

#include <QComboBox>
#include <QLabel>

using namespace Qt::StringLiterals;
namespace keys = workspace::keys;
namespace prompts = ui::prompts;
using shipping::Shipment;

namespace
{

using Desk = SlipEntryDesk<shipping::frmKuroneko2>;

Shipment gift(const QString &to, const QString &goods, int year, qint64 sender)
{
    Shipment made;
    made.accepted = QDate(year, 7, 1);
    made.sender = {u"山田　太郎"_s, {}, u"154-0017"_s, u"東京都世田谷区世田谷1-2-3"_s, {}, u"03-1234-5678"_s};
    made.senderId = sender;
    made.consignee = {to, {}, u"600-8216"_s, u"京都市下京区"_s + to, {}, u"075-343-0006"_s};
    made.goods = goods;
    made.category = u"お中元"_s;
    made.method = u"佐川急便"_s;
    made.memo1 = u"御中元"_s;
    made.memo2 = u"山田"_s;
    return made;
}

// What 山田 sent in other years, the last one for somebody else.
void rememberGifts(Desk &desk)
{
    Shipment ofOldFile = gift(u"みどり園"_s, u"ぶどう"_s, 2024, 0);
    ofOldFile.sender.tel = u"0312345678"_s;
    Shipment namesake = gift(u"知らない人"_s, u"酒"_s, 2025, 0);
    namesake.sender.tel = u"0267-1-1"_s;
    for (const Shipment &each : {gift(u"ホテル白樺"_s, u"りんご"_s, 2023, 1), ofOldFile,
                                 gift(u"ホテル白樺"_s, u"りんご 10kg"_s, 2025, 1), namesake,
                                 gift(u"よその人"_s, u"そば"_s, 2025, 2)})
        QVERIFY(shipping::addShipment(desk.connection, each));
}

QStringList listed(Desk &desk)
{
    QStringList rows;
    for (const base::ReportRow &row : desk.hand().the<ui::ReportGrid>("gridSent").report().rows)
        rows << row.values.at(0).toString() + u' ' + row.values.at(2).toString();
    return rows;
}

} // namespace

class TestFrmKuroneko2 : public ScriptedTest
{
    Q_OBJECT

private slots:
    void oneSenderAndHisConsignees();
    void sendsOnceMoreWhatWasSent();
    void aSenderTypedByHand();
    void closesWithItsOwnKeys();
};

void TestFrmKuroneko2::oneSenderAndHisConsignees()
{
    Desk desk;
    QCOMPARE(desk.hand().the<QLabel>("lblMemo1").text(), u"のし上書き"_s);
    QCOMPARE(desk.hand().the<QLabel>("lblMemo2").text(), u"名入れ"_s);
    QCOMPARE(desk.text("txtName1"), QString());
    desk.search(u"たろう"_s);
    QCOMPARE(desk.text("txtName1"), u"山田　太郎"_s);
    QCOMPARE(desk.hand().cursor(), u"txtNName1"_s); // who is still to be told
    desk.hand().choose("dbcKubun", u"お中元"_s);
    desk.type("txtHinmei", u"ぶどう"_s);
    desk.type("txtMemo1", u"御中元"_s);
    for (const char16_t *name : {u"ホテル白樺", u"みどり園"}) {
        desk.type("txtNName1", QString::fromUtf16(name));
        desk.type("txtNZip", u"391-0301"_s);
        desk.type("txtNAddress1", u"茅野市北山4035"_s);
        desk.print();
        QCOMPARE(desk.text("txtNName1"), QString());
    }
    QCOMPARE(desk.history(u"発送ID, 依頼主ID, 依頼主名1, 届先名1, 備考1, 納品先ID"_s),
             (QStringList{u"1|1|山田　太郎|ホテル白樺|御中元|-"_s, u"2|1|山田　太郎|みどり園|御中元|-"_s}));
    QCOMPARE(listed(desk), (QStringList{u"みどり園 ぶどう"_s, u"ホテル白樺 ぶどう"_s}));
    QCOMPARE(desk.hand().cursor(), u"gridSent"_s);
}

void TestFrmKuroneko2::sendsOnceMoreWhatWasSent()
{
    Desk desk;
    rememberGifts(desk);
    desk.search(u"たろう"_s);
    QCOMPARE(listed(desk), (QStringList{u"ホテル白樺 りんご 10kg"_s, u"みどり園 ぶどう"_s}));
    desk.hand().choose("dbcKubun", u"お中元"_s);
    desk.type("txtNName1", u"これから入力する人"_s);
    desk.hand().the("gridSent").setFocus();
    desk.hand().key(Qt::Key_Down);
    QCOMPARE(desk.text("txtNName1"), u"これから入力する人"_s); // passing by takes nobody
    prompts::expectAskCautiously(u"入力した「これから入力する人」を、「みどり園」に置き換えますか。"_s,
                                 false);
    desk.hand().key(Qt::Key_Return);
    QCOMPARE(desk.text("txtNName1"), u"これから入力する人"_s);
    prompts::expectAskCautiously(u"入力した「これから入力する人」を、「みどり園」に置き換えますか。"_s, true);
    desk.hand().the("gridSent").setFocus();
    desk.hand().key(Qt::Key_Return);
    QCOMPARE(desk.text("txtMemo2"), u"山田"_s);
    QCOMPARE(desk.hand().cursor(), u"txtDate2"_s);
    desk.print();
    QCOMPARE(desk.history(u"届先名1, 品名, 備考1, 依頼主ID, 受付日"_s).last(),
             u"みどり園|ぶどう|御中元|1|2026-04-01"_s);
    QCOMPARE(listed(desk), (QStringList{u"みどり園 ぶどう"_s, u"ホテル白樺 りんご 10kg"_s}));
}

void TestFrmKuroneko2::aSenderTypedByHand()
{
    Desk desk;
    rememberGifts(desk);
    desk.search(u"たろう"_s);
    desk.type("txtName1", u"山田　次郎"_s);
    prompts::expectAskCautiously(u"入力した「山田　次郎」を、「検索した納品先」に置き換えますか。"_s, false);
    desk.search(u"はなこ"_s);
    desk.hand().choose("dbcKubun", u"お中元"_s);
    desk.type("txtHinmei", u"ぶどう"_s);
    desk.type("txtNName1", u"みどり園"_s);
    desk.type("txtNZip", u"6008216"_s);
    desk.type("txtNAddress1", u"京都市下京区"_s);
    desk.print();
    QCOMPARE(desk.history(u"依頼主名1, 依頼主ID"_s).last(),
             u"山田　次郎|-"_s); // no longer the customer's gift
    QCOMPARE(listed(desk), QStringList());
    QCOMPARE(desk.hand().cursor(), u"txtNName1"_s);
    // From nobody at all is asked about.
    desk.hand().clear("txtName1");
    desk.type("txtNName1", u"みどり園"_s);
    desk.type("txtNZip", u"6008216"_s);
    desk.type("txtNAddress1", u"京都市下京区"_s);
    prompts::expectAskCautiously(u"ご依頼主の名前が入力されていません。\nこのまま印刷しますか。"_s, false);
    desk.print();
    QCOMPARE(desk.jobs(), std::size_t(1));
}

void TestFrmKuroneko2::closesWithItsOwnKeys()
{
    Desk desk;
    desk.settings.write(keys::invMemo[0], u"ワレモノ"_s);
    QCOMPARE(desk.text("txtMemo1"), QString());
    desk.type("txtMemo1", u"御歳暮"_s);
    desk.type("txtCode2", u"０４５"_s);
    desk.hand().key(Qt::Key_Escape);
    QVERIFY(!desk.screen().isVisible());
    QCOMPARE(desk.settings.text(keys::inv2Memo[0]), u"御歳暮"_s);
    QCOMPARE(desk.settings.text(keys::inv2Code[1]), u"045"_s);
    QCOMPARE(desk.settings.text(keys::invMemo[0]), u"ワレモノ"_s);
    QCOMPARE(desk.settings.text(keys::kuroWindowState[1]), u"0"_s);
}

QTEST_MAIN(TestFrmKuroneko2)
#include "tst_frmkuroneko2.moc"

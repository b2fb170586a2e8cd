// All that a slip says, as it is typed at the counter: shapes of codes, days and amounts, whom it goes to,
// and what is asked before it is printed.
#include "shipping/slips/ShipmentPanel.h"
#include "shipping/slips/shipment_entry.h"
#include "shipping/slips/shipment_store.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"
#include "ui/screen.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using shipping::Shipment;

namespace
{

// 2026-04-01, as the clock of the shop.
const QDate today(2026, 4, 1);

class Host : public ui::Screen
{
public:
    explicit Host(workspace::Workspace &workspace)
        : Screen(workspace)
        , panel(this)
    {
        (new QVBoxLayout(this))->addWidget(&panel);
        const base::Status bound = panel.bind(workspace);
        QVERIFY(bound);
        setUp();
    }

    shipping::ShipmentPanel panel;
};

struct Desk : FreshShop
{
    Desk()
    {
        run(u"INSERT INTO 発送区分 (発送区分ID, 発送区分名) VALUES (1, '通販'), (2, 'お中元')"_s);
        run(u"INSERT INTO 納品商品 (商品ID, 商品名) VALUES (1, 'りんご'), (2, 'りんごジュース')"_s);
        workspace.panel.carrier = u"ゆうパック"_s;
        host = std::make_unique<Host>(workspace);
        hand = std::make_unique<ScreenDriver>(host.get());
        hand->show();
    }
    shipping::ShipmentPanel &panel() { return host->panel; }

    std::unique_ptr<Host> host;
    std::unique_ptr<ScreenDriver> hand;
};

Shipment parcel()
{
    Shipment made;
    made.accepted = today;
    made.delivery = QDate(2026, 4, 3);
    made.sender = {u"かんばん堂"_s, u""_s, u"380-0821"_s, u"長野市上千歳町1"_s, u""_s, u"026-224-0010"_s};
    made.consignee = {u"髙島商店"_s,          u"仕入部"_s, u"530-0001"_s,
                      u"大阪市北区梅田2-4"_s, u"12階"_s,   u"06-6345-0001"_s};
    made.goods = u"りんご　サンふじ 5kg"_s;
    made.price = 3980;
    made.category = u"お中元"_s;
    made.method = u"佐川急便"_s;
    made.memo1 = u"御中元"_s;
    made.memo2 = u"山田"_s;
    made.customerCode = u"012345"_s;
    made.officeCode = u"77"_s;
    made.trackingNumber = u"123456789013"_s;
    made.timeSlot = u"14-16"_s;
    made.cooling = u"冷蔵"_s;
    made.parcels = 3;
    made.consigneeId = 7;
    made.senderId = 4;
    return made;
}

QString shown(const std::optional<QDate> &day) { return day ? day->toString(Qt::ISODate) : u"-"_s; }

} // namespace

class TestShipmentPanel : public ScriptedTest
{
    Q_OBJECT

private slots:
    void days_data();
    void days();
    void boxes_data();
    void boxes();
    void showsAndGivesBackAll();
    void beginsOnTheFormOfTheSettings();
    void aNameTypedOverIsNobodysAnyMore();
    void productsFillTheGoodsIn();
    void whatCannotBeMeantIsTold_data();
    void whatCannotBeMeantIsTold();
    void doubts_data();
    void doubts();
    void theSameSlipAgainIsDoubted();
    void theNextSlipKeepsWhatIsTheSame();
};

void TestShipmentPanel::days_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("day");
    const std::pair<const char16_t *, const char16_t *> cases[] = {
        {u"2026/4/5", u"2026-04-05"},
        {u"２０２６０４０５", u"2026-04-05"},
        {u"R8.4.5", u"2026-04-05"},
        {u"4/5", u"2026-04-05"},
        {u"０４ー０５", u"2026-04-05"},
        {u"0405", u"2026-04-05"},
        {u"12月24日", u"2025-12-24"}, // nearer than that of this year
        {u"9/30", u"2026-09-30"},
        {u"4/31", u"-"},
        {u"2026/4", u"-"},
        {u"5", u"-"},
        {u"2026/02/30", u"-"},
        {u"明日", u"-"}};
    for (const auto &[typed, day] : cases)
        QTest::newRow(qPrintable(QString::fromUtf16(typed)))
            << QString::fromUtf16(typed) << QString::fromUtf16(day);
}

void TestShipmentPanel::days()
{
    QFETCH(QString, typed);
    QTEST(shown(shipping::typedDay(typed, today)), "day");
}

void TestShipmentPanel::boxes_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    const struct
    {
        const char *name;
        const char16_t *box, *typed, *shown;
    } cases[] = {
        {"full width", u"txtNZip", u"１５４－００１７", u"154-0017"},
        {"without hyphen", u"txtZip", u"1540017", u"154-0017"},
        {"behind its mark", u"txtNZip", u"〒154-0017", u"154-0017"},
        {"five digits", u"txtNZip", u"154-00", u"154-00"},
        {"telephone", u"txtNTel1", u"０３ー１２３４ー５６７８", u"03-1234-5678"},
        {"amount", u"Text1", u"１２３４５円", u"12,345"},
        {"no amount", u"Text2", u"未定", u"未定"},
        {"month and day", u"txtDate2", u"4/3", u"2026/04/03"},
        {"half a date", u"txtDate2", u"2026/0", u"2026/0"},
        {"read bar code", u"txtKDenNo", u"a123456789013a", u"123456789013"},
        {"typed number", u"txtKDenNo", u"１２３４－５６７８－９０１３", u"123456789013"},
        {"code", u"txtCode1", u"０１２３４５－Ａ ", u"012345-A"},
    };
    for (const auto &each : cases)
        QTest::newRow(each.name) << QString::fromUtf16(each.box) << QString::fromUtf16(each.typed)
                                 << QString::fromUtf16(each.shown);
}

void TestShipmentPanel::boxes()
{
    QFETCH(QString, box);
    QFETCH(QString, typed);
    Desk desk;
    desk.hand->box(box).setFocus();
    desk.hand->type(box, typed);
    desk.hand->leave(box); // by Enter
    QTEST(desk.hand->box(box).text(), "shown");
    QVERIFY(!desk.hand->box(box).hasFocus());
}

void TestShipmentPanel::showsAndGivesBackAll()
{
    Desk desk;
    Shipment kept = parcel();
    kept.id = 12;
    kept.version = 5;
    kept.slipId = 3;
    kept.carriage = 0;
    kept.printed = today;
    kept.exported = today;
    Shipment old; // of a file that knew other carriers
    old.accepted = today;
    old.method = u"昔の便"_s;
    for (const Shipment &each : {kept, parcel(), old}) {
        desk.panel().setShipment(each);
        QVERIFY(!desk.panel().isChanged());
        const auto given = desk.panel().shipment();
        QVERIFY(given);
        QCOMPARE(*given, each);
    }
    desk.hand->type("txtMemo2", u"鈴木"_s);
    QVERIFY(desk.panel().isChanged());
    QVERIFY(!desk.panel().isChanged(true)); // on a screen that keeps it
}

void TestShipmentPanel::beginsOnTheFormOfTheSettings()
{
    Desk desk;
    QCOMPARE(desk.hand->list("Combo5").currentText(), u"ゆうパック"_s);
    QCOMPARE(desk.hand->box("txtDate1").text(), u"2026/04/01"_s);
    QVERIFY(desk.hand->the<QLabel>("lblNotice").isVisible());
    turnWheelOver(desk.hand->list("Combo5"));
    QCOMPARE(desk.hand->list("Combo5").currentText(), u"ゆうパック"_s);
    desk.hand->key(Qt::Key_Tab); // elsewhere
    desk.hand->choose("Combo5", u"佐川急便"_s);
    QVERIFY(!desk.hand->the<QLabel>("lblNotice").isVisible());
    desk.hand->the("txtDate2").setFocus();
    for (const char16_t *day : {u"2026/04/01", u"2026/04/02"}) {
        desk.hand->key(Qt::Key_Up);
        QCOMPARE(desk.hand->box("txtDate2").text(), QString::fromUtf16(day));
    }
}

void TestShipmentPanel::aNameTypedOverIsNobodysAnyMore()
{
    Desk desk;
    desk.panel().setConsignee(parcel().consignee, 7);
    QVERIFY(!desk.panel().isConsigneeTyped());
    const struct
    {
        const char16_t *box, *typed;
        qint64 id;
    } steps[] = {{u"txtNName2", u"総務部", 7},
                 {u"txtNName1", u"高島　商店", 7},
                 {u"txtNName1", u"鈴木商店", 0},
                 {u"txtNName1", u"髙島商店", 7},
                 {u"txtNName1", u"", 0}};
    for (const auto &step : steps) {
        desk.hand->clear(QString::fromUtf16(step.box));
        desk.hand->type(QString::fromUtf16(step.box), QString::fromUtf16(step.typed));
        QCOMPARE(desk.panel().shipment()->consigneeId, step.id);
        QVERIFY(desk.panel().isConsigneeTyped());
        const bool saysSo = desk.hand->the<QLabel>("lblConsignee").text().contains(u"別の人"_s);
        QCOMPARE(saysSo, step.id == 0);
    }
}

void TestShipmentPanel::productsFillTheGoodsIn()
{
    Desk desk;
    QLineEdit &goods = desk.hand->box("txtHinmei");
    desk.hand->choose("dbcShohin", u"りんごジュース"_s);
    QCOMPARE(goods.text(), u"りんごジュース"_s);
    desk.hand->type("txtHinmei", u"りんごジュース 12本"_s);
    desk.hand->the("dbcShohin").setFocus(); // and on again
    desk.hand->key(Qt::Key_Tab);
    QCOMPARE(goods.text(), u"りんごジュース 12本"_s);
    desk.hand->choose("dbcShohin", u"りんご"_s);
    QCOMPARE(goods.text(), u"りんご"_s);
}

void TestShipmentPanel::whatCannotBeMeantIsTold_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("told");
    QTest::newRow("half a date") << u"txtDate2"_s << u"2026/0"_s << u"配達予定日「2026/0」"_s;
    QTest::newRow("no such day") << u"txtDate1"_s << u"4/31"_s << u"受付日「4/31」"_s;
    QTest::newRow("no day") << u"txtDate1"_s << u""_s << u"受付日が入力されていません"_s;
    QTest::newRow("price") << u"Text1"_s << u"3,98O"_s << u"価格には数字"_s;
    QTest::newRow("parts of a yen") << u"Text2"_s << u"0.5"_s << u"送料には０から"_s;
    QTest::newRow("less than nothing") << u"Text2"_s << u"▲800"_s << u"送料には０から"_s;
}

void TestShipmentPanel::whatCannotBeMeantIsTold()
{
    QFETCH(QString, box);
    QFETCH(QString, typed);
    QFETCH(QString, told);
    Desk desk;
    desk.panel().setShipment(parcel());
    desk.hand->clear(box);
    desk.hand->type(box, typed);
    const auto given = desk.panel().shipment();
    QVERIFY(!given);
    QVERIFY2(given.error().text.startsWith(told), qPrintable(given.error().text));
    desk.panel().focusFault();
    QCOMPARE(desk.hand->cursor(), box);
}

void TestShipmentPanel::doubts_data()
{
    QTest::addColumn<Shipment>("slip");
    QTest::addColumn<QString>("told"); // empty: nothing
    const auto row = [](const char *name, const std::function<void(Shipment &)> &change,
                        const QString &told) {
        Shipment slip = parcel();
        change(slip);
        QTest::newRow(name) << slip << told;
    };
    row(
        "none", [](Shipment &) {}, u""_s);
    row(
        "no wish", [](Shipment &s) { s.delivery = {}; }, u""_s);
    row(
        "the same day", [](Shipment &s) { s.delivery = today; }, u""_s);
    row(
        "yesterday", [](Shipment &s) { s.accepted = s.delivery = today.addDays(-1); },
        u"配達予定日（2026/03/31）が今日（2026/04/01）より前です。"_s);
    row(
        "before it is taken", [](Shipment &s) { s.accepted = QDate(2026, 4, 4); },
        u"配達予定日（2026/04/03）が受付日（2026/04/04）より前です。"_s);
    row(
        "last year", [](Shipment &s) { s.accepted = QDate(2025, 4, 1); },
        u"受付日が 2025/04/01 です。今日（2026/04/01）から離れています。"_s);
    row(
        "next year", [](Shipment &s) { s.delivery = QDate(2027, 4, 3); },
        u"配達予定日（2027/04/03）が半年以上先です。"_s);
    row(
        "nobody", [](Shipment &s) { s.consignee.name1 = s.consignee.name2 = QString(); },
        u"お届け先の名前が入力されていません。"_s);
    row(
        "from nobody", [](Shipment &s) { s.sender = {}; }, u"ご依頼主の名前が入力されていません。"_s);
    row(
        "no goods", [](Shipment &s) { s.goods = u"　"_s; }, u"品名が入力されていません。"_s);
    row(
        "nothing to collect",
        [](Shipment &s) {
            s.method = u"宅急便　コレクト"_s;
            s.price.reset();
        },
        u"「宅急便　コレクト」ですが、集金する価格が入力されていません。"_s);
    row(
        "a digit mistyped", [](Shipment &s) { s.trackingNumber = u"123456789012"_s; },
        u"送り状番号の最後の数字がほかの数字と合いません。打ち間違いがないか確かめてください。"_s);
}

void TestShipmentPanel::doubts()
{
    QFETCH(Shipment, slip);
    QTEST(shipping::doubtsOf(slip, today).join(u'\n'), "told");
}

void TestShipmentPanel::theSameSlipAgainIsDoubted()
{
    FreshShop shop;
    const auto doubts = [&](const Shipment &slip) {
        return shipping::doubtsOf(slip, shop.connection)->join(u'\n');
    };
    Shipment slip = parcel();
    QCOMPARE(doubts(slip), QString());
    QCOMPARE(*shipping::addShipment(shop.connection, slip), 1);
    QVERIFY(doubts(slip).contains(u"すでに印刷されています（発送ID 1）"_s));
    QVERIFY(doubts(slip).contains(u"ほかの荷物（発送ID 1）"_s));
    slip.trackingNumber.clear();
    slip.goods = u"ぶどう"_s;
    QCOMPARE(doubts(slip), QString());
    slip = parcel();
    slip.id = 1; // itself, for its reissue
    QCOMPARE(doubts(slip), QString());
}

void TestShipmentPanel::theNextSlipKeepsWhatIsTheSame()
{
    Desk desk;
    desk.panel().setShipment(parcel());
    desk.hand->type("Text2", u"八百円"_s); // typed wrongly, and given up
    desk.panel().beginNext();
    Shipment next = parcel();
    next.consignee = {};
    next.consigneeId = 0;
    next.delivery = {};
    next.timeSlot.clear();
    next.cooling.clear();
    next.trackingNumber.clear();
    next.parcels = 1;
    QCOMPARE(*desk.panel().shipment(), next);
    next.method = u"宅急便　コレクト"_s;
    QVERIFY(!shipping::nextOf(next).price); // what was collected is not collected again
    Shipment ofSale = parcel();
    ofSale.slipId = 12; // says so in its remarks
    const Shipment after = shipping::nextOf(ofSale);
    QVERIFY(after.goods.isEmpty() && !after.price && after.memo1.isEmpty() && after.memo2.isEmpty());
}

QTEST_MAIN(TestShipmentPanel)
#include "tst_shipment_panel.moc"

// Finding, following and deleting shipments.
#include "db/recordset.h"
#include "db/transaction.h"
#include "shipped.h"
#include "shipping/history/history.h"
#include "shipping/history/history_deletion.h"
#include "shipping/history/tracking_links.h"
#include "shipping/slips/tracking_number.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace shipping;

namespace
{

// Keys 1 to 6; the days do not follow them.
base::Status addAll(FreshShop &shop)
{
    Shipment first = parcel(u"㈱山田　商店"_s, u"髙橋 花子"_s, {2026, 3, 20});
    first.category = u"お歳暮"_s;
    first.consigneeId = 7;
    first.trackingNumber = u"1234-5678-9012"_s;
    ship(shop, first);
    Shipment second = parcel(u"ﾔﾏﾀﾞﾌﾙｰﾂ"_s, u"鈴木_商店"_s, {2026, 3, 1});
    second.category = u"お歳暮２"_s;
    second.senderId = 7;
    second.trackingNumber = u"３９０１２３４５６７８９"_s;
    ship(shop, second);
    Shipment third = parcel(u"100%果汁の会"_s, u"鈴木商店"_s, {2025, 12, 31});
    third.category = u"お歳暮"_s;
    third.slipId = 12;
    ship(shop, third);
    ship(shop, parcel(u"100円均一"_s, u"C:\\商会"_s, {2026, 3, 1}));
    Shipment fifth = parcel(u"株式会社中部日本特産品販売センター"_s, u"佐藤"_s, {2024, 1, 1});
    fifth.consignee.name2 = u"方 高橋"_s;
    ship(shop, fifth);
    Shipment sixth = parcel(u"社会福祉法人ひまわり会"_s, u"名古屋市立東部小学校"_s, {});
    sixth.sender.name2 = u"特別養護老人ホームあおぞら"_s;
    ship(shop, sixth);
    shop.run(u"UPDATE 発送マスター SET 送り状番号 = NULL WHERE 発送ID = 6"_s);
    return {};
}

void fill(FreshShop &shop)
{
    if (!db::atomically(shop.connection, [&shop] { return addAll(shop); }))
        qFatal("no history");
}

QString keysOf(db::Recordset &rows)
{
    if (!rows.readAll())
        return u"failed"_s;
    QStringList keys;
    for (int row = 0; row < rows.count(); ++row)
        keys << QString::number(rows.keyAt(row));
    return keys.join(u' ');
}

} // namespace

Q_DECLARE_METATYPE(shipping::HistoryQuery)

class TestHistory : public QObject
{
    Q_OBJECT

private slots:
    void found_data();
    void found();
    void theLastOnesOfMany();
    void numbersAsTheyAreTyped_data();
    void numbersAsTheyAreTyped();
    void carriersPages_data();
    void carriersPages();
    void aNumberIsSaved_data();
    void aNumberIsSaved();
    void partsAreDeleted_data();
    void partsAreDeleted();
};

void TestHistory::found_data()
{
    QTest::addColumn<HistoryQuery>("query");
    QTest::addColumn<QString>("keys");
    QTest::newRow("all, the last first") << HistoryQuery() << u"6 5 4 3 2 1"_s;
    QTest::newRow("from a day on") << HistoryQuery{.from = {2026, 3, 1}} << u"4 2 1"_s;
    QTest::newRow("days the wrong way round")
        << HistoryQuery{.from = {2026, 3, 1}, .to = {2025, 12, 31}} << u"4 3 2"_s;
    QTest::newRow("until a day") << HistoryQuery{.to = {2025, 12, 31}} << u"5 3"_s;
    QTest::newRow("hiragana") << HistoryQuery{.sender = u"やまだ"_s} << u"2"_s;
    QTest::newRow("both names") << HistoryQuery{.sender = u"山田"_s, .consignee = u"高橋"_s} << u"1"_s;
    QTest::newRow("the other way round")
        << HistoryQuery{.sender = u"高橋"_s, .consignee = u"山田"_s} << u""_s;
    QTest::newRow("words in any order") << HistoryQuery{.consignee = u" 花子　髙橋 "_s} << u"1"_s;
    QTest::newRow("blanks alone") << HistoryQuery{.sender = u"　 "_s} << u"6 5 4 3 2 1"_s;
    QTest::newRow("a percent sign") << HistoryQuery{.sender = u"100%"_s} << u"3"_s;
    QTest::newRow("one of full width") << HistoryQuery{.sender = u"１００％"_s} << u"3"_s;
    QTest::newRow("an underscore") << HistoryQuery{.consignee = u"木_商"_s} << u"2"_s;
    QTest::newRow("a backslash") << HistoryQuery{.consignee = u":\\"_s} << u"4"_s;
    QTest::newRow("a quote") << HistoryQuery{.consignee = u"' OR '1' = '1"_s} << u""_s;
    QTest::newRow("in the second line") << HistoryQuery{.consignee = u"佐藤 高橋"_s} << u"5"_s;
    QTest::newRow("longer than a key")
        << HistoryQuery{.sender = u"株式会社中部日本特産品販売センター"_s} << u"5"_s;
    QTest::newRow("behind the end of a key") << HistoryQuery{.sender = u"老人ホームあおぞら"_s} << u"6"_s;
    QTest::newRow("a category") << HistoryQuery{.category = u"お歳暮"_s} << u"3 1"_s;
    QTest::newRow("a category and a name")
        << HistoryQuery{.sender = u"山田"_s, .category = u"お歳暮"_s} << u"1"_s;
    QTest::newRow("a category and a day")
        << HistoryQuery{.from = {2026, 1, 1}, .category = u"お歳暮"_s} << u"1"_s;
    QTest::newRow("a number without hyphens") << HistoryQuery{.tracking = u"123456789012"_s} << u"1"_s;
    QTest::newRow("its end in groups") << HistoryQuery{.tracking = u"5678 9012"_s} << u"1"_s;
    QTest::newRow("as a barcode reader sends it") << HistoryQuery{.tracking = u"A390123456789A"_s} << u"2"_s;
    QTest::newRow("a number and a name") << HistoryQuery{.sender = u"山田"_s, .tracking = u"3901"_s} << u""_s;
    QTest::newRow("no number yet") << HistoryQuery{.withoutTracking = true} << u"6 5 4 3"_s;
    QTest::newRow("of a customer, sent or got") << HistoryQuery{.customer = 7} << u"2 1"_s;
    QTest::newRow("of a slip") << HistoryQuery{.slip = 12} << u"3"_s;
}

void TestHistory::found()
{
    QFETCH(HistoryQuery, query);
    FreshShop shop;
    fill(shop);
    db::Recordset rows(shop.connection);
    QVERIFY(openHistory(rows, query));
    QTEST(keysOf(rows), "keys");
}

void TestHistory::theLastOnesOfMany()
{
    FreshShop shop;
    fill(shop);
    const auto last = lastShipments(shop.connection, {.from = {2026, 3, 1}}, 2);
    QVERIFY(last);
    QCOMPARE(last->size(), 2);
    QCOMPARE(inWords(last->front()), u"4　2026/03/01　C:\\商会　みかん"_s);
    const auto some = readShipments(shop.connection, {2, 99, 1});
    QVERIFY(some);
    QCOMPARE(some->size(), 2);
    QCOMPARE(some->back().consigneeId, 7);
}

void TestHistory::numbersAsTheyAreTyped_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<bool>("isDoubted");
    QTest::newRow("in groups") << u" 4156-2475-1765 "_s << u"415624751765"_s << false;
    QTest::newRow("by an input method") << u"４１５６ー２４７５ー１７６５"_s << u"415624751765"_s << false;
    QTest::newRow("by a barcode reader") << u"a415624751765a"_s << u"415624751765"_s << false;
    QTest::newRow("two digits swapped") << u"4156-2475-7165"_s << u"415624757165"_s << true;
    QTest::newRow("a letter of another country") << u"EF 123 456 789 JP"_s << u"EF123456789JP"_s << false;
    QTest::newRow("another length") << u"12345"_s << u"12345"_s << false;
    QTest::newRow("nothing") << u"　"_s << u""_s << false;
}

void TestHistory::numbersAsTheyAreTyped()
{
    QFETCH(QString, typed);
    QTEST(storedTracking(typed), "stored");
    QTEST(!trackingDoubt(storedTracking(typed)).isEmpty(), "isDoubted");
}

void TestHistory::carriersPages_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("host"); // empty: no page
    const QString yamato = u"jizen.kuronekoyamato.co.jp"_s;
    QTest::newRow("collected") << u"宅急便　コレクト"_s << u"1234-5678-9012"_s << yamato;
    QTest::newRow("an older file's") << u"クロネコヤマト"_s << u"123456789012"_s << yamato;
    QTest::newRow("another carrier") << u"佐川急便"_s << u"123456789012"_s << u"k2k.sagawa-exp.co.jp"_s;
    QTest::newRow("the post") << u"ゆうパック"_s << u"123456789012"_s << u"trackings.post.japanpost.jp"_s;
    QTest::newRow("a label") << u"宛名ラベル"_s << u"123456789012"_s << u""_s;
    QTest::newRow("no number") << u"佐川急便"_s << u"不明"_s << u""_s;
    QTest::newRow("an address") << u"佐川急便"_s << u"&x=http://evil.example/?1234"_s
                                << u"k2k.sagawa-exp.co.jp"_s;
}

void TestHistory::carriersPages()
{
    QFETCH(QString, form);
    QFETCH(QString, number);
    QFETCH(QString, host);
    const auto carrier = carrierOf(form);
    const auto page = carrier ? trackingPage(*carrier, number) : std::nullopt;
    QCOMPARE(page ? page->host() : QString(), host);
    if (!page)
        return;
    QCOMPARE(page->scheme(), u"https"_s);
    const QString digits = number.contains(u"http"_s) ? u"1234"_s : u"123456789012"_s;
    QVERIFY(page->query().contains(u'=' + digits));
    QVERIFY(!page->toString().contains(u"evil"_s));
}

void TestHistory::aNumberIsSaved_data()
{
    QTest::addColumn<QString>("meanwhile");
    QTest::addColumn<QString>("outcome");
    QTest::addColumn<QString>("row"); // 送り状番号, 品名
    QTest::newRow("nothing") << u"SELECT 1"_s << u"done"_s << u"4156|みかん"_s;
    QTest::newRow("another field") << u"UPDATE 発送マスター SET 品名 = 'りんご', 版 = 99"_s << u"done"_s
                                   << u"4156|りんご"_s;
    QTest::newRow("the same number") << u"UPDATE 発送マスター SET 送り状番号 = '4156', 版 = 99"_s << u"done"_s
                                     << u"4156|みかん"_s;
    QTest::newRow("another number") << u"UPDATE 発送マスター SET 送り状番号 = '77', 版 = 99"_s << u"changed"_s
                                    << u"77|みかん"_s;
    QTest::newRow("deleted") << u"DELETE FROM 発送マスター"_s << u"gone"_s << u""_s;
}

void TestHistory::aNumberIsSaved()
{
    QFETCH(QString, meanwhile);
    FreshShop shop;
    ship(shop, parcel(u"山田"_s, u"高橋"_s));
    (void)shop.connection.execute(meanwhile);
    const base::Status saved = saveTracking(shop.connection, 1, u""_s, u"4156"_s);
    QTEST(saved                   ? u"done"_s
          : saved.error().changed ? u"changed"_s
          : saved.error().gone    ? u"gone"_s
                                  : u"failed"_s,
          "outcome");
    QTEST(shop.rows(u"SELECT 送り状番号, 品名 FROM 発送マスター"_s).join(u'\n'), "row");
}

void TestHistory::partsAreDeleted_data()
{
    QTest::addColumn<std::optional<QString>>("category");
    QTest::addColumn<QString>("extent"); // shipments, first, last, without a number
    QTest::addColumn<QString>("left");
    QTest::newRow("all") << std::optional<QString>() << u"6 2024-01-01 2026-03-20 4"_s << u""_s;
    QTest::newRow("a category") << std::optional(u"お歳暮"_s) << u"2 2025-12-31 2026-03-20 1"_s
                                << u"2 4 5 6"_s;
    QTest::newRow("those without one")
        << std::optional(u""_s) << u"3 2024-01-01 2026-03-01 3"_s << u"1 2 3"_s;
    QTest::newRow("another one") << std::optional(u"お歳暮' OR '1' = '1"_s) << u"0   0"_s << u"1 2 3 4 5 6"_s;
}

void TestHistory::partsAreDeleted()
{
    QFETCH(std::optional<QString>, category);
    FreshShop shop;
    fill(shop);
    const HistoryPart part{category};
    const auto extent = extentOf(shop.connection, part);
    QVERIFY(extent);
    QTEST(u"%1 %2 %3 %4"_s.arg(extent->shipments).arg(extent->first, extent->last).arg(extent->without),
          "extent");
    const auto keys = [&shop] {
        return shop.rows(u"SELECT 発送ID FROM 発送マスター ORDER BY 発送ID"_s).join(u' ');
    };
    HistoryExtent before = *extent;
    ++before.shipments;
    const auto refused = deleteHistory(shop.connection, part, before);
    QVERIFY(!refused && refused.error().changed);
    QCOMPARE(keys(), u"1 2 3 4 5 6"_s);
    const auto deleted = deleteHistory(shop.connection, part, *extent);
    QVERIFY(deleted);
    QCOMPARE(*deleted, extent->shipments);
    QTEST(keys(), "left");
}

QTEST_GUILESS_MAIN(TestHistory)
#include "tst_history.moc"

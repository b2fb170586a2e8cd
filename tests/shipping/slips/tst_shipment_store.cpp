// Shipments in the history: keys, values and what other programs did meanwhile.
#include "shipping/slips/shipment_store.h"
#include "support/fresh_shop.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

shipping::Shipment gift()
{
    shipping::Shipment shipment;
    shipment.accepted = QDate(2026, 11, 20);
    shipment.delivery = QDate(2026, 12, 1);
    shipment.sender = {u"㈱山田　商店"_s,          u"総務部"_s, u"１００－０００１"_s,
                       u"東京都千代田区千代田1"_s, u""_s,       u"03(1234)5678"_s};
    shipment.consignee = {u"髙橋 花子"_s,    u""_s, u"4338122"_s, u"静岡県浜松市中区上島3丁目"_s,
                          u"ｺｰﾎﾟ上島 201"_s, u""_s};
    shipment.goods = u"みかん 10kg"_s;
    shipment.price = 3980;
    shipment.category = u"お歳暮"_s;
    shipment.method = u"宅急便"_s;
    shipment.memo1 = u"御歳暮"_s;
    shipment.memo2 = u"山田"_s;
    shipment.customerCode = u"0312345678"_s;
    shipment.timeSlot = u"午前中"_s;
    shipment.cooling = u"冷蔵"_s;
    shipment.parcels = 2;
    shipment.consigneeId = 7;
    shipment.slipId = 12;
    shipment.printed = QDate(2026, 11, 20);
    return shipment;
}

} // namespace

class TestShipmentStore : public QObject
{
    Q_OBJECT

private slots:
    void whatIsAddedIsReadAgain();
    void searchKeys_data();
    void searchKeys();
    void whatCannotBePrinted_data();
    void whatCannotBePrinted();
    void otherPrograms_data();
    void otherPrograms();
};

void TestShipmentStore::whatIsAddedIsReadAgain()
{
    FreshShop shop;
    shipping::Shipment shipment = gift();
    QCOMPARE(*shipping::addShipment(shop.connection, shipment), 1);
    const auto first = shipping::readShipment(shop.connection, 1);
    QVERIFY(first && first->version);
    shipment.id = 1;
    shipment.version = first->version;
    QCOMPARE(*first, shipment);
    QCOMPARE(shop.rows(u"SELECT 依頼主名キー, 届先名キー FROM 発送マスター"_s),
             QStringList(u"㈱山田　商店総務部|髙橋 花子"_s));
    shop.run(u"UPDATE 発送マスター SET 発送ID = 41"_s);
    QCOMPARE(*shipping::addShipment(shop.connection, shipment), 42);
    shipment.consignee.name1 = u"髙橋\r\n花子"_s; // pasted from a mail
    QCOMPARE(*shipping::addShipment(shop.connection, shipment), 43);
    QCOMPARE(shop.rows(u"SELECT 届先名1, 届先名キー FROM 発送マスター WHERE 発送ID = 43"_s),
             QStringList(u"髙橋 花子|髙橋 花子"_s));
}

void TestShipmentStore::searchKeys_data()
{
    QTest::addColumn<QString>("name1");
    QTest::addColumn<QString>("name2");
    QTest::addColumn<QString>("key");
    QTest::newRow("one line") << u"山田"_s << u""_s << u"山田"_s;
    QTest::newRow("20 characters") << u"あいうえおかきくけこさしすせそたちつてと"_s << u""_s
                                   << u"あいうえおかきくけこさしすせそた"_s;
    QTest::newRow("both lines") << u"あいうえおかきくけこ"_s << u"さしすせそたちつ"_s
                                << u"あいうえおかきくけこさしすせそた"_s;
    QTest::newRow("trimmed after it was cut")
        << u"　株式会社山田商店東京支店大"_s << u"　 　係"_s << u"株式会社山田商店東京支店大"_s;
    QTest::newRow("never half a character")
        << u"あいうえおかきくけこさしすせそ𠮷田"_s << u""_s << u"あいうえおかきくけこさしすせそ"_s;
}

void TestShipmentStore::searchKeys()
{
    QFETCH(QString, name1);
    QFETCH(QString, name2);
    QTEST(shipping::nameKey({name1, name2, {}, {}, {}, {}}), "key");
}

void TestShipmentStore::whatCannotBePrinted_data()
{
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("zip");
    QTest::addColumn<QString>("told");
    QTest::newRow("fine") << u"お歳暮"_s << u"433-8122"_s << u""_s;
    QTest::newRow("another category") << u"お中元"_s << u"433-8122"_s << u"発送区分が不正です。"_s;
    QTest::newRow("no category") << u""_s << u""_s << u"発送区分が不正です。"_s;
    QTest::newRow("a name with a quote") << u"お歳暮' OR '1' = '1"_s << u"1"_s << u"発送区分が不正です。"_s;
    QTest::newRow("no postal code") << u"お歳暮"_s << u"　"_s << u"郵便番号が入力されていません。"_s;
}

void TestShipmentStore::whatCannotBePrinted()
{
    QFETCH(QString, category);
    QFETCH(QString, zip);
    FreshShop shop;
    shop.run(u"INSERT INTO 発送区分 (発送区分ID, 発送区分名) VALUES (1, 'お歳暮')"_s);
    shipping::Shipment shipment = gift();
    shipment.category = category;
    shipment.consignee.zip = zip;
    const base::Status checked = shipping::checkPrintable(shop.connection, shipment);
    QTEST(checked ? u""_s : checked.error().text, "told");
}

void TestShipmentStore::otherPrograms_data()
{
    QTest::addColumn<QString>("before"); // while the row was read
    QTest::addColumn<QString>("meanwhile");
    QTest::addColumn<QString>("outcome");
    const QString version = u"UPDATE 発送マスター SET 版 = 99"_s;
    QTest::newRow("nothing") << u"SELECT 1"_s << u"SELECT 1"_s << u"done"_s;
    QTest::newRow("an older file's row")
        << u"UPDATE 発送マスター SET 版 = NULL"_s << u"SELECT 1"_s << u"done"_s;
    QTest::newRow("changed") << u"SELECT 1"_s << version << u"changed"_s;
    QTest::newRow("changed for the first time")
        << u"UPDATE 発送マスター SET 版 = NULL"_s << version << u"changed"_s;
    QTest::newRow("deleted") << u"SELECT 1"_s << u"DELETE FROM 発送マスター"_s << u"gone"_s;
}

void TestShipmentStore::otherPrograms()
{
    QFETCH(QString, before);
    QFETCH(QString, meanwhile);
    QFETCH(QString, outcome);
    for (const bool removes : {false, true}) {
        FreshShop shop;
        QVERIFY(shipping::addShipment(shop.connection, gift()));
        (void)shop.connection.execute(before);
        auto shipment = shipping::readShipment(shop.connection, 1);
        QVERIFY(shipment);
        (void)shop.connection.execute(meanwhile);
        shipment->goods = u"りんご"_s;
        const base::Status written = removes ? shipping::removeShipment(shop.connection, *shipment)
                                             : shipping::changeShipment(shop.connection, *shipment);
        QCOMPARE(written                   ? u"done"_s
                 : written.error().changed ? u"changed"_s
                 : written.error().gone    ? u"gone"_s
                                           : u"failed"_s,
                 outcome);
        const QStringList changed = shop.rows(u"SELECT 品名 FROM 発送マスター"_s);
        QCOMPARE(changed, outcome == u"gone" || (removes && written) ? QStringList()
                          : written                                  ? QStringList(u"りんご"_s)
                                                                     : QStringList(u"みかん 10kg"_s));
    }
}

QTEST_GUILESS_MAIN(TestShipmentStore)
#include "tst_shipment_store.moc"

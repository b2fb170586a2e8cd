// From a slip to its parcel; the history on paper and as a table.
#include "book/slip_store.h"
#include "db/transaction.h"
#include "shipped.h"
#include "shipping/history/history_list.h"
#include "shipping/history/parcel_of_slip.h"
#include "text/cp932.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace shipping;

namespace
{

// A sale of 2 × 1,000 yen to a customer of \a taxClass, closed as the sales screen closes it.
qint64 sell(FreshShop &shop, int taxClass, bool inclusive, bool closes = true)
{
    shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名2, 郵便番号, 住所1, 住所2, TEL1, 消費税区分) "
             "VALUES (7, '㈱髙橋', '総務部', '433-8122', '浜松市', '中央1-2', '053-1234', ?)"_s,
             {taxClass});
    book::NewSlip sale;
    sale.date = QDate(2026, 4, 1);
    sale.counterpart = 7;
    sale.employee = 1;
    sale.taxRate = 10;
    const auto saved = book::saveHeader(shop.connection, sale);
    if (!saved ||
        !book::addLine(shop.connection, saved->id, {u"りんご"_s, u"箱"_s, 2, u"箱"_s, 1000, 2000}) ||
        !book::keepRemark(shop.connection, saved->id, u"冷蔵庫へ"_s))
        qFatal("no sale");
    if (closes &&
        !book::closeSlip(shop.connection, saved->id, 10, static_cast<book::TaxClass>(taxClass), inclusive))
        qFatal("the sale is not closed");
    return saved->id;
}

} // namespace

class TestParcels : public QObject
{
    Q_OBJECT

private slots:
    void goods_data();
    void goods();
    void prices_data();
    void prices();
    void aParcelBeginsWithItsSale();
    void parcelsBesideTheirSlip();
    void theListIsWritten();
    void theListIsPrinted();
};

void TestParcels::goods_data()
{
    QTest::addColumn<QStringList>("products"); // a "-" before it: came back
    QTest::addColumn<QString>("words");
    QTest::newRow("one") << QStringList{u"りんご"_s} << u"りんご"_s;
    QTest::newRow("two") << QStringList{u"りんご"_s, u"みかん"_s} << u"りんご　ほか"_s;
    QTest::newRow("the same twice") << QStringList{u"りんご"_s, u"りんご "_s} << u"りんご"_s;
    QTest::newRow("and its tax") << QStringList{u"りんご"_s, QString::fromUtf16(book::taxLineName)}
                                 << u"りんご"_s;
    QTest::newRow("what came back is not sent") << QStringList{u"-みかん"_s, u"りんご"_s} << u"りんご"_s;
    QTest::newRow("none") << QStringList() << u""_s;
    const QString name = u"ｱﾙﾌﾟｽ産"_s + QString(30, u'桃');
    QTest::newRow("long") << QStringList{name, u"りんご"_s}
                          << u"ｱﾙﾌﾟｽ産"_s + QString(18, u'桃') + u"　ほか"_s;
}

void TestParcels::goods()
{
    QFETCH(QStringList, products);
    std::vector<book::SlipLine> lines;
    for (const QString &product : products) {
        const bool isBack = product.startsWith(u'-');
        lines.push_back({.product = product.mid(isBack ? 1 : 0),
                         .specification = {},
                         .quantity = isBack ? -1 : 1,
                         .unit = {},
                         .price = 100,
                         .amount = isBack ? -100.0 : 100.0});
    }
    QTEST(goodsInWords(lines), "words");
    QVERIFY(text::cp932Bytes(goodsInWords(lines)) <= goodsWidth);
}

void TestParcels::prices_data()
{
    QTest::addColumn<int>("taxClass");
    QTest::addColumn<bool>("inclusive");
    QTest::addColumn<bool>("closes");
    QTest::addColumn<double>("price"); // 0: none is known
    QTest::newRow("taxed on delivery") << 0 << false << true << 2200.0;
    QTest::newRow("taxed on the bill") << 1 << false << true << 0.0;
    QTest::newRow("prices include it") << 2 << true << true << 2000.0;
    QTest::newRow("ticked on this slip") << 1 << true << true << 2000.0;
    QTest::newRow("not closed yet") << 0 << false << false << 0.0;
}

void TestParcels::prices()
{
    QFETCH(int, taxClass);
    QFETCH(bool, inclusive);
    QFETCH(bool, closes);
    FreshShop shop;
    const auto begun =
        parcelOfSlip(shop.connection, sell(shop, taxClass, inclusive, closes), shop.workspace.today());
    QVERIFY(begun);
    QTEST(begun->price.value_or(0), "price");
}

void TestParcels::aParcelBeginsWithItsSale()
{
    FreshShop shop;
    const qint64 slip = sell(shop, 2, true);
    Shipment expected;
    expected.accepted = QDate(2026, 4, 1);
    expected.consignee = {u"㈱髙橋"_s, u"総務部"_s, u"433-8122"_s, u"浜松市"_s, u"中央1-2"_s, u"053-1234"_s};
    expected.goods = u"りんご"_s;
    expected.price = 2000;
    expected.memo1 = u"冷蔵庫へ"_s;
    expected.memo2 = u"伝票番号 "_s + shop.value(u"SELECT 伝票番号 FROM 入出庫マスター"_s).toString();
    expected.consigneeId = 7;
    expected.slipId = slip;
    const auto begun = parcelOfSlip(shop.connection, slip, shop.workspace.today());
    QVERIFY(begun);
    QCOMPARE(*begun, expected);
    // A customer who was deleted leaves no name that a parcel could go to.
    shop.run(u"DELETE FROM 納品先"_s);
    const auto nobody = parcelOfSlip(shop.connection, slip, shop.workspace.today());
    QVERIFY(nobody);
    QCOMPARE(nobody->consignee, Party());
    QVERIFY(!parcelOfSlip(shop.connection, 99, shop.workspace.today()));
}

void TestParcels::parcelsBesideTheirSlip()
{
    FreshShop shop;
    QCOMPARE(*parcelsInWords(shop.connection, 12), u""_s);
    Shipment sent = parcel(u"山田"_s, u"高橋"_s);
    sent.slipId = 12;
    ship(shop, sent);
    sent.trackingNumber = u"415624751765"_s;
    sent.method = u"佐川急便"_s;
    ship(shop, sent);
    ship(shop, parcel(u"山田"_s, u"高橋"_s));
    QCOMPARE(*parcelsInWords(shop.connection, 12), u"発送　2026/03/01　佐川急便　415624751765\n"
                                                   "発送　2026/03/01　宅急便　送り状番号なし"_s);
    ship(shop, sent);
    ship(shop, sent);
    QVERIFY(parcelsInWords(shop.connection, 12)->endsWith(u"\nほかにも発送があります。"_s));
}

void TestParcels::theListIsWritten()
{
    FreshShop shop;
    Shipment sent = parcel(u"山田, \"本店\""_s, u"髙橋"_s);
    sent.trackingNumber = u"012345678901"_s;
    sent.memo1 = u"御歳暮"_s;
    std::vector<qint64> keys;
    const base::Status added = db::atomically(shop.connection, [&]() -> base::Status {
        for (int i = 0; i < 1203; ++i)
            keys.insert(keys.begin(), ship(shop, sent));
        return {};
    });
    QVERIFY(added);
    shop.run(u"DELETE FROM 発送マスター WHERE 発送ID = 1000"_s);
    const QString fileName = shop.path(u"list.csv"_s);
    QVERIFY(exportHistory(shop.connection, keys, fileName, base::unwatched));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u"\r\n"_s, Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 1203);
    QVERIFY(lines.at(1).startsWith(u"1203,2026/03/01,,\"山田, \"\"本店\"\"\","_s));
    QVERIFY(lines.last().startsWith(u"1,"_s));
    QVERIFY(lines.at(1).contains(u"012345678901"_s));
    QCOMPARE(lines.filter(QRegularExpression(u"^1000,"_s)).size(), 0);
}

void TestParcels::theListIsPrinted()
{
    FreshShop shop;
    Shipment sent = parcel(u"山田"_s, u"髙橋"_s);
    sent.consignee.name2 = u"総務部"_s;
    sent.parcels = 2;
    ship(shop, sent);
    ship(shop, sent);
    const auto report = historyReport(shop.connection, {2, 9, 1}, u"お歳暮"_s);
    QVERIFY(report);
    QCOMPARE(report->rows.size(), 2);
    QCOMPARE(report->rows.front().link, QVariant(2LL));
    QVERIFY(report->rows.front().values.contains(u"髙橋\n総務部"_s));
    QCOMPARE(report->totals.last().toInt(), 4);
    QVERIFY(!historyReport(shop.connection, std::vector<qint64>(mostOnPaper + 1, 1), {}));
    const auto stopped =
        historyReport(shop.connection, {1, 2}, {}, [](qint64 done, qint64) { return done < 2; });
    QVERIFY(!stopped && stopped.error().cancelled);
}

QTEST_GUILESS_MAIN(TestParcels)
#include "tst_parcels.moc"

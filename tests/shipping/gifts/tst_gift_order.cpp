// Gift order sheets without a screen: what counts for a line, what was sent last year, checks, pasting, the
// draft.
#include "gift_season.h"

#include "shipping/gifts/earlier_gifts.h"
#include "shipping/gifts/gift_checks.h"
#include "shipping/gifts/gift_draft.h"
#include "shipping/gifts/gift_paste.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace shipping;

namespace
{

const QDate today(2026, 4, 1);

GiftOrder order()
{
    GiftOrder order;
    order.sender = person(u"髙橋商店"_s, u"100-0001"_s, u"東京都千代田区千代田1-1"_s);
    order.senderId = 7;
    order.accepted = today;
    order.category = u"お歳暮"_s;
    order.method = u"宅急便"_s;
    order.common.goods = u"みかん 5kg"_s;
    order.common.price = 3980;
    order.common.carriage = 880;
    order.common.memo1 = u"御歳暮"_s;
    return order;
}

GiftRow line(const QString &name, const QString &zip, const QString &address)
{
    GiftRow row;
    row.consignee = person(name, zip, address);
    return row;
}

QString words(const QStringList &sentences) { return sentences.join(u" / "_s); }

} // namespace

class TestGiftOrder : public QObject
{
    Q_OBJECT

private slots:
    void cells_data();
    void cells();
    void aLineGoesByTheSheetButForItsOwn();
    void lastYearsListHasEachConsigneeOnce();
    void sendersOfOneNameAreToldApart();
    void faultsAndDoubts();
    void otherGoodsAtTheOldPriceAreDoubted();
    void pasting_data();
    void pasting();
    void theDraftComesBackAsItWas();
    void aDamagedDraftStays();
};

void TestGiftOrder::cells_data()
{
    QTest::addColumn<GiftColumn>("column");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    using enum GiftColumn;
    QTest::newRow("full-width price") << Price << u"￥４，２００"_s << u"4,200"_s;
    QTest::newRow("nothing is the sheet's") << Price << u" "_s << u"3,980"_s;
    QTest::newRow("nothing in spite of the sheet") << Memo1 << u"ー"_s << u"－"_s;
    QTest::newRow("half a yen") << Price << u"3980.5"_s << u"!価格には"_s;
    QTest::newRow("money back") << Carriage << u"-100"_s << u"!送料には"_s;
    QTest::newRow("words for an amount") << Price << u"時価"_s << u"!価格には"_s;
    QTest::newRow("this year's day") << Delivery << u"12/20"_s << u"2026/12/20"_s;
    QTest::newRow("next year's") << Delivery << u"１月５日"_s << u"2027/01/05"_s;
    QTest::newRow("no such day") << Delivery << u"2/30"_s << u"!「2/30」"_s;
    QTest::newRow("half a date") << Delivery << u"12/"_s << u"!「12/」"_s;
    QTest::newRow("as soon as it comes") << Delivery << u"-"_s << u"－"_s;
    QTest::newRow("hours with marks") << TimeSlot << u"１４時～１６時"_s << u"14-16"_s;
    QTest::newRow("morning") << TimeSlot << u"午前"_s << u"午前中"_s;
    QTest::newRow("hours that nobody brings at") << TimeSlot << u"2-4"_s << u"!時間帯の欄"_s;
    QTest::newRow("cooled") << Cooling << u"冷蔵便"_s << u"冷蔵"_s;
    QTest::newRow("code without hyphen") << Zip << u"４３８８１２２"_s << u"438-8122"_s;
    QTest::newRow("code of old") << Zip << u"438"_s << u"438"_s;
    QTest::newRow("a break within") << Name1 << u"井上\n誠\r\n"_s << u"井上 誠"_s;
    QTest::newRow("telephone") << Tel << u"０５３－４６４－１２３４"_s << u"053-464-1234"_s;
}

void TestGiftOrder::cells()
{
    QFETCH(GiftColumn, column);
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    GiftRow row = line(u"井上"_s, u""_s, u""_s);
    const GiftRow before = row;
    const base::Status taken = enterCell(row, column, typed, QDate(2026, 11, 22));
    if (!shown.startsWith(u'!')) {
        QCOMPARE(shownCell(order(), row, column), shown);
        return;
    }
    QVERIFY(!taken);
    QVERIFY2(taken.error().text.startsWith(shown.mid(1)), qPrintable(taken.error().text));
    QVERIFY(row == before);
}

void TestGiftOrder::aLineGoesByTheSheetButForItsOwn()
{
    GiftOrder sheet = order();
    sheet.rows = {line(u"井上"_s, u"430-0926"_s, u"浜松市砂山町6"_s), line(u"原"_s, u"1"_s, u"磐田市1"_s)};
    sheet.rows[1].ticked = false;
    QVERIFY(enterCell(sheet.rows[0], GiftColumn::Price, u"5,000"_s, today));
    QVERIFY(enterCell(sheet.rows[0], GiftColumn::Memo1, u"－"_s, today));
    sheet.common.goods = u"りんご"_s;
    const Shipment gift = shipmentOf(sheet, sheet.rows[0]);
    QCOMPARE(gift.goods, u"りんご"_s);
    QCOMPARE(*gift.price, 5000);
    QCOMPARE(*gift.carriage, 880);
    QCOMPARE(gift.memo1, QString());
    QCOMPARE(gift.senderId, 7);
    const GiftSums sums = sumsOf(sheet);
    QCOMPARE(sums.count, 1);
    QCOMPARE(sums.price + sums.carriage, 5880);
    // A line whose name is typed over is another person's.
    sheet.rows[0].consigneeId = 8;
    QVERIFY(enterCell(sheet.rows[0], GiftColumn::Name1, u"井上 花"_s, today));
    QCOMPARE(shipmentOf(sheet, sheet.rows[0]).consigneeId, 0);
}

void TestGiftOrder::lastYearsListHasEachConsigneeOnce()
{
    GiftSeason shop;
    const Party sender = order().sender;
    const Party typed = person(u"高橋　商店"_s, u"100-0001"_s, u"千代田区千代田1丁目1番"_s); // 髙 as 高
    const Party inoue = person(u"井上　誠"_s, u"430-0926"_s, u"静岡県浜松市中央区砂山町６番"_s);
    shop.send({2025, 11, 20}, sender, 7, inoue, u"みかん"_s, 3000, 800);
    Party department = typed;
    department.name2 = u"仕入部"_s;
    shop.send({2025, 12, 5}, department, 0, person(u"ｲﾉｳｴ"_s, u"1"_s, u"別の町2"_s), u"りんご"_s, 4000, 900);
    shop.send({2025, 12, 8}, sender, 7, person(u"井上誠 様"_s, u"4300926"_s, u"浜松市中央区砂山町6"_s),
              u"柿"_s, 3500, 700);
    shop.send({2025, 12, 9}, sender, 7, inoue, u"お中元の残り"_s, 1, 1, u"お中元"_s);
    shop.send({2024, 12, 9}, sender, 7, person(u"昔の人"_s, u"1"_s, u"町1"_s), u"古い"_s, 1, 1);
    shop.send({2025, 12, 1}, person(u"よその店"_s, u"1"_s, u"町9"_s), 0, inoue, u"よそ"_s, 1, 1);
    const Season season = seasonBefore(today.addMonths(8), 1); // of November
    const auto gifts = lastGiftsOf(shop.connection, {7, sender, u"お歳暮"_s, season.from, season.to});
    QVERIFY(gifts);
    QCOMPARE(gifts->size(), 2);
    QCOMPARE((*gifts)[0].goods, u"柿"_s); // the newest of the two ways in which he was written
    QCOMPARE((*gifts)[1].goods, u"りんご"_s);
    const GiftRow row = rowLike(gifts->front());
    QCOMPARE(row.own.memo1, u"御歳暮"_s);
    QCOMPARE(row.own.memo2, u"髙橋"_s);
    QVERIFY(!row.has(GiftTerm::Delivery));
    // Of all categories, and known by the name alone.
    QCOMPARE(lastGiftsOf(shop.connection, {0, typed, {}, season.from, season.to})->size(), 2);
    QCOMPARE(giftsOf(shop.connection, {0, typed, {}, season.from, season.to})->size(), 4);
}

void TestGiftOrder::sendersOfOneNameAreToldApart()
{
    GiftSeason shop;
    const Party sender = order().sender;
    shop.send({2026, 3, 1}, sender, 7, person(u"甲"_s, u"1"_s, u"町1"_s), u"みかん"_s, 1, 1);
    shop.send({2026, 3, 1}, sender, 9, person(u"乙"_s, u"1"_s, u"町2"_s), u"みかん"_s, 1, 1);
    shop.send({2026, 3, 1}, sender, 0, person(u"丙"_s, u"1"_s, u"町3"_s), u"みかん"_s, 1, 1);
    const auto names = [&](qint64 id) {
        QStringList all;
        const auto gifts = giftsOf(shop.connection, {id, sender, {}, {2026, 1, 1}, today});
        for (const Shipment &gift : *gifts)
            all << gift.consignee.name1;
        return all.join(u' ');
    };
    QCOMPARE(names(7), u"丙 甲"_s);
    QCOMPARE(names(9), u"丙 乙"_s);
}

void TestGiftOrder::faultsAndDoubts()
{
    GiftSeason shop;
    GiftOrder sheet = order();
    QCOMPARE(checkHead(shop.connection, sheet).error().text, u"発行するお届け先に印が付いていません。"_s);
    sheet.rows = {line(u"井上 誠"_s, u"430-0926"_s, u"浜松市中央区砂山町6"_s), line(u""_s, u""_s, u"町1"_s),
                  line(u"原"_s, u"438"_s, u""_s),
                  line(u"井上　誠様"_s, u"4300926"_s, u"静岡県浜松市中央区砂山町６"_s)};
    QVERIFY(checkHead(shop.connection, sheet));
    QStringList faults;
    for (const GiftFault &fault : faultsOf(sheet))
        faults << QString::number(fault.row) + fault.text.left(5);
    QCOMPARE(words(faults), u"1お届け先名 / 1郵便番号が / 2住所が入力"_s);
    sheet.rows[1].ticked = false;
    sheet.rows[2].consignee.address1 = u"磐田市1"_s;
    QVERIFY(faultsOf(sheet).empty());
    sheet.method = u"宅急便　コレクト"_s;
    sheet.common.price.reset();
    QCOMPARE(faultsOf(sheet).size(), 3); // nobody pays an amount that is not there
    sheet.method = u"宅急便"_s;
    shop.send({2026, 3, 20}, sheet.sender, 7, sheet.rows[2].consignee, u"みかん"_s, 1, 1);
    shop.send({2025, 3, 20}, sheet.sender, 7, sheet.rows[0].consignee, u"みかん"_s, 1, 1);
    sheet.rows[0].setOwn(GiftTerm::Delivery, QDate(2026, 3, 31));
    sheet.rows[2].setOwn(GiftTerm::Delivery, QDate(2027, 3, 31));
    const auto doubts = orderDoubts(shop.connection, sheet, today);
    QVERIFY(doubts);
    QCOMPARE(words(*doubts), u"1 行目　井上 誠: 配達予定日 2026/03/31 は過ぎています。 / "
                             "3 行目　原: 配達予定日 2027/03/31 は半年より先です。 / "
                             "4 行目　井上　誠様: 1 行目と同じお届け先です。 / "
                             "3 行目　原: 2026/03/20 に同じ区分で発行しています。"_s);
    sheet.rows[2].consignee.address2 = QString(200, u'あ');
    QVERIFY(words(*orderDoubts(shop.connection, sheet, today)).contains(u"住所２が 200 文字"_s));
    sheet.category = u"暑中見舞"_s;
    QCOMPARE(checkHead(shop.connection, sheet).error().text, u"発送区分が不正です。"_s);
}

void TestGiftOrder::otherGoodsAtTheOldPriceAreDoubted()
{
    GiftSeason shop;
    GiftOrder sheet = order();
    sheet.common.goods = u"干物詰合せ"_s;
    shop.send({2025, 3, 20}, sheet.sender, 7, person(u"原"_s, u"438"_s, u"磐田市1"_s), u"みかん"_s, 3900, 1);
    sheet.rows = {line(u"森"_s, u"1"_s, u"町1"_s),
                  rowLike(giftsOf(shop.connection, {7, sheet.sender, {}, {2025, 1, 1}, today})->front())};
    QCOMPARE(priceDoubts(sheet), QStringList());
    sheet.rows[1].dropOwn(GiftTerm::Goods);
    QVERIFY(enterCell(sheet.rows[0], GiftColumn::Goods, u"りんご"_s, today));
    QCOMPARE(words(*orderDoubts(shop.connection, sheet, today)),
             u"1 行目　森: 品名は「りんご」ですが、価格 3,980 円は「干物詰合せ」のものです。 / "
             "2 行目　原: 品名は「干物詰合せ」ですが、価格 3,900 円は「みかん」のものです。"_s);
    for (GiftRow &row : sheet.rows)
        QVERIFY(enterCell(row, GiftColumn::Price, u"3,900"_s, today)); // said by the clerk himself
    QCOMPARE(priceDoubts(sheet), QStringList());
}

void TestGiftOrder::pasting_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<GiftColumn>("column");
    QTest::addColumn<QString>("outcome");
    using enum GiftColumn;
    QTest::newRow("from a spreadsheet") << u"原\t\t4388122\t磐田市1\r\n森\t\t1\t袋井市2\r\n"_s << Name1
                                        << u"井上|原 438-8122 磐田市1|森 1 袋井市2"_s;
    QTest::newRow("a column of codes") << u"4388122\n4300926\n"_s << Zip << u"井上| 438-8122 | 430-0926 "_s;
    QTest::newRow("a CSV file's lines") << u"\"原, 本店\",,4388122,\"磐田市\"\"1\"\"\"\n"_s << Tick
                                        << u"井上|原, 本店 438-8122 磐田市\"1\""_s;
    QTest::newRow("with headings, in any order")
        << u"住所\t性別\tお名前\t〒\n磐田市1\t男\t原\t4388122\n"_s << Memo1 << u"井上|原 438-8122 磐田市1"_s;
    QTest::newRow("too many columns") << u"a\tb\tc\td\n"_s << Cooling << u"!4 列を貼"_s;
    QTest::newRow("a price that is none")
        << u"原\t\t1\t町\t\t\tみかん\t時価"_s << Name1 << u"!貼り付ける 1 行目の「価格」"_s;
    QTest::newRow("nothing") << u""_s << Name1 << u"井上"_s;
}

void TestGiftOrder::pasting()
{
    QFETCH(QString, text);
    QFETCH(GiftColumn, column);
    QFETCH(QString, outcome);
    GiftOrder sheet = order();
    sheet.rows = {line(u"井上"_s, u""_s, u""_s)};
    const auto cells = pastedCells(text, column);
    const auto rows =
        cells ? pastedInto(sheet, 1, *cells) : base::Result<std::vector<GiftRow>>(cells.error());
    if (!rows) {
        QVERIFY2(rows.error().text.startsWith(outcome.mid(1)), qPrintable(rows.error().text));
        return;
    }
    QStringList shown{rows->front().consignee.name1};
    for (std::size_t row = 1; row < rows->size(); ++row) {
        const Party &consignee = (*rows)[row].consignee;
        shown << consignee.name1 + u' ' + consignee.zip + u' ' + consignee.address1;
    }
    QCOMPARE(shown.join(u'|'), outcome);
    // A line whose slip is out is not typed over.
    sheet.rows[0].issued = true;
    QCOMPARE(bool(pastedInto(sheet, 0, *cells)), cells->empty());
}

void TestGiftOrder::theDraftComesBackAsItWas()
{
    FreshShop shop;
    const QString file = draftFile(shop.folder.path());
    QVERIFY(!*readDraft(file, today));
    GiftOrder sheet = order();
    sheet.rows = {line(u"𠮷田\t\"花子\""_s, u"1"_s, u"町\n1"_s), line(u""_s, u""_s, u""_s)};
    sheet.rows[0].consigneeId = 8;
    sheet.rows[0].setOwn(GiftTerm::Delivery, QDate(2026, 12, 20));
    sheet.rows[0].setOwn(GiftTerm::Price, 4200.0);
    sheet.rows[0].setOwn(GiftTerm::Memo1, {});
    sheet.rows[0].pricedGoods = u"柿"_s;
    sheet.rows[1].issued = true;
    sheet.rows[1].ticked = false;
    sheet.rows[1].state = u"発行済"_s;
    QVERIFY(saveDraft(file, sheet));
    const auto back = readDraft(file, today);
    QVERIFY(back && *back);
    QVERIFY(**back == sheet);
    QVERIFY(dropDraft(file));
    QVERIFY(!QFile::exists(file));
}

void TestGiftOrder::aDamagedDraftStays()
{
    FreshShop shop;
    const QString file = draftFile(shop.folder.path());
    QFile damaged(file);
    QVERIFY(damaged.open(QIODevice::WriteOnly));
    damaged.write("{\"届先\": [{]");
    damaged.close();
    QVERIFY(!readDraft(file, today));
    QVERIFY(!QFile::exists(file)); // its place is free for the next one
    QCOMPARE(QDir(shop.folder.path()).entryList({u"*破損 2026-04-01*"_s}).size(), 1);
}

QTEST_GUILESS_MAIN(TestGiftOrder)
#include "tst_gift_order.moc"

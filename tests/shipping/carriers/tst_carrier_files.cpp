// What the carriers' programs will read, taken apart again field by field, and what is kept out of the files.
#include "carrier_shop.h"
#include "shipping/carriers/carrier_export.h"
#include "shipping/carriers/field_division.h"
#include "tables/csv_reader.h"
#include "text/cp932.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace shipping;

namespace
{

using enum CarrierProgram;

CarrierSettings filledSettings(CarrierProgram program)
{
    CarrierSettings settings = CarrierSettings::read(workspace::Settings(u"/dev/null"_s), program);
    if (program == Yupri)
        settings.set(u"kind"_s, u"1000800001"_s);
    else
        settings.set(u"customer"_s, program == B2Cloud ? u"0262000000"_s : u"123456789012"_s);
    settings.set(prefixSetting, u"KB-"_s);
    return settings;
}

CarrierParcel parcel(const Shipment &shipment, bool collected = false)
{
    return {.shipment = shipment, .shipDay = QDate(2026, 4, 2), .collected = collected};
}

struct WrittenFile
{
    QByteArray bytes;
    QList<QStringList> rows;
};

WrittenFile written(const FreshShop &shop, CarrierProgram program, const std::vector<CarrierParcel> &parcels)
{
    const QString name = shop.path(u"out.csv"_s);
    const base::Status done =
        writeCarrierFile(name, program, parcels, filledSettings(program), base::unwatched);
    if (!done)
        qFatal("%s", qPrintable(done.error().text));
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no file");
    WrittenFile result{file.readAll(), {}};
    const QString content =
        program == B2Cloud ? *text::fromCp932(result.bytes) : QString::fromUtf8(result.bytes.sliced(3));
    tables::CsvReader reader(content);
    for (QStringList row; reader.next(row);)
        result.rows << row;
    return result;
}

// "3:山田|..." of the fields that are not empty, counted from 1 as the carriers count them.
QStringList filledFields(const QStringList &row)
{
    QStringList filled;
    for (qsizetype i = 0; i < row.size(); ++i) {
        if (!row[i].isEmpty())
            filled << u"%1:%2"_s.arg(i + 1).arg(row[i]);
    }
    return filled;
}

// "heading: what" of all findings.
QStringList inWords(const std::vector<CarrierFinding> &findings)
{
    QStringList words;
    for (const CarrierFinding &finding : findings)
        words << finding.heading + u": "_s + finding.what;
    return words;
}

} // namespace

class TestCarrierFiles : public QObject
{
    Q_OBJECT

private slots:
    // Its box shows a break as a blank; what is seen is what is kept.
    void aPastedBreakIsMended()
    {
        const auto now = mended(hurriedShipment(), ShipmentField::SenderAddress, {u"𠮷田町\nｱｲｳ1-2\t"_s, {}});
        QCOMPARE(now->sender.address1, u"𠮷田町 ｱｲｳ1-2"_s);
    }

    void eachFieldIsReadBack()
    {
        FreshShop shop;
        Shipment shipment = hurriedShipment();
        shipment.id = 12;
        const WrittenFile b2 = written(shop, B2Cloud, {parcel(shipment)});
        QCOMPARE(b2.rows.size(), 1);
        QCOMPARE(b2.rows[0].size(), 97);
        QVERIFY(b2.bytes.endsWith("\r\n"));
        QCOMPARE(filledFields(b2.rows[0]), (QStringList{u"1:KB-12"_s,
                                                        u"2:0"_s,
                                                        u"3:2"_s,
                                                        u"5:2026/04/02"_s,
                                                        u"6:2026/04/03"_s,
                                                        u"7:1416"_s,
                                                        u"9:03-1234-5678"_s,
                                                        u"11:100-0005"_s,
                                                        u"12:東京都千代田区丸の内１－１－１"_s,
                                                        u"13:丸の内ﾋﾞﾙ12階"_s,
                                                        u"14:㈱山田商店"_s,
                                                        u"16:山田　太郎"_s,
                                                        u"18:様"_s,
                                                        u"20:026-200-0000"_s,
                                                        u"22:380-0821"_s,
                                                        u"23:長野県長野市上千歳町1-1"_s,
                                                        u"25:有限会社かんばん堂"_s,
                                                        u"28:りんご, \"ふじ\" 5kg"_s,
                                                        u"33:御祝　=佐藤"_s,
                                                        u"38:1"_s,
                                                        u"40:0262000000"_s,
                                                        u"42:01"_s}));

        shipment.method = u"佐川急便"_s;
        shipment.timeSlot = u"18-21"_s;
        const WrittenFile hiden = written(shop, Hiden3, {parcel(shipment), parcel(shipment)});
        QVERIFY(hiden.bytes.startsWith("\xEF\xBB\xBF"));
        QCOMPARE(hiden.rows.size(), 3);
        QCOMPARE(hiden.rows[0].size(), 74);
        QCOMPARE(hiden.rows[0][61], u"お問い合せ送り状No."_s);
        QCOMPARE(hiden.rows[1], hiden.rows[2]);
        QCOMPARE(filledFields(hiden.rows[1]), (QStringList{u"3:03-1234-5678"_s,
                                                           u"4:100-0005"_s,
                                                           u"5:東京都千代田区丸の内１－１－１"_s,
                                                           u"6:丸の内ﾋﾞﾙ12階"_s,
                                                           u"8:㈱山田商店"_s,
                                                           u"9:山田　太郎様"_s,
                                                           u"10:KB-12"_s,
                                                           u"11:123456789012"_s,
                                                           u"18:026-200-0000"_s,
                                                           u"19:380-0821"_s,
                                                           u"20:長野県長野市上千歳町1-1"_s,
                                                           u"22:有限会社かんばん堂"_s,
                                                           u"25:りんご, \"ふじ\" 5kg"_s,
                                                           u"26:御祝"_s,
                                                           u"27:=佐藤"_s,
                                                           u"42:1"_s,
                                                           u"43:000"_s,
                                                           u"44:002"_s,
                                                           u"45:2026/04/03"_s,
                                                           u"46:04"_s,
                                                           u"58:1"_s,
                                                           u"61:2026/04/02"_s}));

        shipment.method = u"ゆうパック"_s;
        shipment.timeSlot = u"19-21"_s;
        shipment.cooling.clear();
        const WrittenFile yupri = written(shop, Yupri, {parcel(shipment)});
        QCOMPARE(yupri.rows.size(), 2);
        QCOMPARE(yupri.rows[1],
                 (QStringList{u"1000800001"_s, u"ゆうパック"_s, u"1"_s, u"KB-12"_s, u"りんご, \"ふじ\" 5kg"_s,
                              u""_s, u"100-0005"_s, u"東京都千代田区丸の内１－１－１丸の内ﾋﾞﾙ12階"_s,
                              u"㈱山田商店　山田　太郎様"_s, u"03-1234-5678"_s, u"380-0821"_s,
                              u"長野県長野市上千歳町1-1"_s, u"有限会社かんばん堂"_s, u"026-200-0000"_s,
                              u"20260402"_s, u"20260403"_s, u"57"_s}));
    }

    void collectedParcelsNameAmountAndTax_data()
    {
        QTest::addColumn<QString>("goods");
        QTest::addColumn<bool>("byTable");
        QTest::addColumn<QString>("tax");
        QTest::newRow("one rate, kept by hand") << u"りんご ほか"_s << false << u"392"_s; // 4320 × 10 / 110
        QTest::newRow("food by the table") << u"りんご"_s << true << u"320"_s;            // 4320 × 8 / 108
        QTest::newRow("everyday goods") << u"かご"_s << true << u"392"_s;
        QTest::newRow("no product of the register") << u"りんご ほか"_s << true << QString();
    }

    void collectedParcelsNameAmountAndTax()
    {
        QFETCH(QString, goods);
        QFETCH(bool, byTable);
        FreshShop shop;
        shop.run(
            u"INSERT INTO 納品商品 (商品ID, 商品名, 税区分) VALUES (1, 'りんご', 1), (2, 'かご', NULL)"_s);
        Shipment shipment = hurriedShipment(u"宅急便　コレクト"_s);
        shipment.goods = goods;
        const TaxSource taxes{
            byTable ? *book::TaxRates::read(shop.connection) : book::TaxRates::keptByHand(10), byTable};
        const auto made = parcelOf(shop.connection, kept(shop, shipment), QDate(2026, 4, 2), taxes);
        const QStringList row = written(shop, B2Cloud, {*made}).rows[0];
        QCOMPARE(row[1], u"2"_s);
        QCOMPARE(row[33], u"4320"_s);
        QTEST(row[34], "tax");
    }

    void findingsNameFieldAndFault_data()
    {
        QTest::addColumn<CarrierProgram>("program");
        QTest::addColumn<std::function<void(CarrierParcel &)>>("change");
        QTest::addColumn<QStringList>("found");
        const auto row = [](const char *name, CarrierProgram program,
                            const std::function<void(CarrierParcel &)> &change,
                            const QStringList &found) { QTest::newRow(name) << program << change << found; };
        row("nothing", B2Cloud, [](CarrierParcel &) {}, {});
        row("as long as may be", B2Cloud,
            [](CarrierParcel &p) { p.shipment.sender.name1 = u"株"_s.repeated(16); }, {});
        row("a half-width sign too long", B2Cloud,
            [](CarrierParcel &p) { p.shipment.sender.name1 = u"株"_s.repeated(16) + u'1'; },
            {u"ご依頼主名: 全角 16 文字までのところ、全角 17 文字あります。"_s});
        row("no telephone, five digits, no goods", B2Cloud,
            [](CarrierParcel &p) {
                p.shipment.consignee.tel.clear();
                p.shipment.consignee.zip = u"１００５０"_s;
                p.shipment.goods = u"　"_s;
            },
            {u"お届け先電話番号: 空欄では出力できません。"_s,
             u"お届け先郵便番号: 郵便番号が 7 けたではありません。"_s, u"品名1: 空欄では出力できません。"_s});
        row("characters that Shift-JIS lacks", B2Cloud,
            [](CarrierParcel &p) {
                p.shipment.consignee.name2 = u"𠮷田　髙子"_s;
                p.shipment.goods = u"お茶🍵"_s;
            },
            {u"お届け先名: B2クラウドが読めない文字があります：𠮷"_s,
             u"品名1: B2クラウドが読めない文字があります：🍵"_s});
        row("the same in Unicode", Hiden3,
            [](CarrierParcel &p) {
                p.shipment.method = u"佐川急便"_s;
                p.shipment.consignee.name2 = u"𠮷田　髙子"_s;
            },
            {});
        row("a line end", Hiden3,
            [](CarrierParcel &p) {
                p.shipment.method = u"宛名ラベル"_s;
                p.shipment.goods = u"りんご\nみかん"_s;
            },
            {u"品名1: 改行など、ファイルに書けない文字があります。"_s});
        row("another carrier's, at a time that it does not know", Hiden3,
            [](CarrierParcel &p) { p.shipment.timeSlot = u"20-21"_s; },
            {u"スピード指定: 発送方法が「宅急便」です。佐川急便の荷物ではありません。"_s,
             u"配達指定時間帯: 「20-21」は、e飛伝Ⅲでは指定できません。"_s});
        row("to arrive before it leaves", B2Cloud,
            [](CarrierParcel &p) { p.shipment.delivery = QDate(2026, 4, 1); },
            {u"お届け予定日: 配達予定日（2026/04/01）が、出荷日より前です。"_s});
        row("collected without a price", B2Cloud,
            [](CarrierParcel &p) {
                p.collected = true;
                p.shipment.price.reset();
            },
            {u"コレクト代金引換額(税込): 代金引換の金額になる価格が、1 円以上の円の金額ではありません。"_s});
        row("collected twice", B2Cloud,
            [](CarrierParcel &p) {
                p.collected = true;
                p.shipment.parcels = 2;
            },
            {u"コレクト代金引換額(税込): 代金引換は 1 個口にしてください。2 個口以上では、個数の分だけ代金が引き換えられます。"_s});
        row("an address without end", B2Cloud,
            [](CarrierParcel &p) { p.shipment.consignee.address1 = u"東京都"_s + u"字"_s.repeated(40); },
            {u"お届け先住所: 全角 32 文字までのところ、全角 51 文字あります。"_s});
        row("cooled by post", Yupri, [](CarrierParcel &p) { p.shipment.method = u"ゆうパック"_s; },
            {u"荷物商品名: クール（冷蔵）の荷物は、ゆうプリの形式では書き出せません。"_s});
    }

    void findingsNameFieldAndFault()
    {
        QFETCH(CarrierProgram, program);
        QFETCH(std::function<void(CarrierParcel &)>, change);
        QFETCH(QStringList, found);
        CarrierParcel changed = parcel(hurriedShipment());
        changed.shipment.id = 7;
        change(changed);
        const auto findings = findingsOf(program, changed, filledSettings(program));
        QCOMPARE(inWords(findings), found);
        if (found.isEmpty())
            return;
        FreshShop shop; // and nothing of it is written over what stands there
        const QString name = fileOf(shop, u"out.csv"_s, "before");
        QVERIFY(!writeCarrierFile(name, program, {changed}, filledSettings(program), base::unwatched));
        QCOMPARE(QFile(name).size(), 6);
    }

    void settingsAreChecked()
    {
        FreshShop shop;
        QCOMPARE(inWords(settingsFindings(B2Cloud, CarrierSettings::read(shop.settings, B2Cloud))),
                 QStringList{u"請求先顧客コード: 「請求先顧客コード」が入力されていません。"_s});
        CarrierSettings settings = filledSettings(B2Cloud);
        settings.set(u"customer"_s, u"026-200"_s);
        settings.set(u"payment"_s, u"3"_s);
        settings.set(u"handling1"_s, u"ワレ物注意＝天地無用です"_s);
        settings.set(prefixSetting, u"店"_s);
        settings.write(shop.settings, B2Cloud);
        QCOMPARE(CarrierSettings::read(shop.settings, B2Cloud), settings);
        QCOMPARE(inWords(settingsFindings(B2Cloud, settings)).size(), 4);
    }

    void textsAreDividedWherePeopleWould_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QList<int>>("bytes");
        QTest::addColumn<Borders>("borders");
        QTest::addColumn<QString>("fields"); // with "/" between; empty: no way
        const QList<int> b2{64, 32};
        const QList<int> hiden{32, 32, 32};
        const QString wide =
            u"北海道虻田郡ニセコ町字ニセコ一丁目十二番地の三四五ニセコ高原リゾートマンション東館302号"_s;
        QTest::newRow("lines stay") << QStringList{u"長野県長野市上千歳町1-1"_s, u"栄ビル2F"_s} << b2
                                    << Borders::Sensible << u"長野県長野市上千歳町1-1/栄ビル2F"_s;
        QTest::newRow("a building behind the number")
            << QStringList{u"神奈川県横浜市都筑区荏田東"_s, u"茅ヶ崎中央3-4-5グランドメゾン芝浦東1203号室"_s}
            << b2 << Borders::Sensible
            << u"神奈川県横浜市都筑区荏田東茅ヶ崎中央3-4-5/グランドメゾン芝浦東1203号室"_s;
        QTest::newRow("digits of two lines stay apart")
            << QStringList{u"長野市若里4-17-1"_s, u"201"_s} << QList<int>{64} << Borders::Sensible
            << u"長野市若里4-17-1　201"_s;
        QTest::newRow("as one where that fits")
            << QStringList{u"長野市若里４－１７－１　信州科学技術総合振興センター西棟五階南側"_s} << b2
            << Borders::Sensible << u"長野市若里４－１７－１　信州科学技術総合振興センター西棟五階南側"_s;
        QTest::newRow("three lines of sixteen")
            << QStringList{wide} << hiden << Borders::Any
            << u"北海道虻田郡ニセコ町字ニセコ/一丁目十二番地の三四五ニセコ高原/リゾートマンション東館302号"_s;
        QTest::newRow("never within a number")
            << QStringList{u"あ"_s.repeated(14) + u"12345"_s} << QList<int>{32, 32} << Borders::Any
            << u"%1/12345"_s.arg(u"あ"_s.repeated(14));
        QTest::newRow("not within a word")
            << QStringList{u"山"_s.repeated(20)} << QList<int>{32, 32} << Borders::Sensible << QString();
    }

    // Wherever it is divided, every character but blanks is there again, and each field fits.
    void textsAreDividedWherePeopleWould()
    {
        QFETCH(QStringList, lines);
        QFETCH(QList<int>, bytes);
        QFETCH(Borders, borders);
        QFETCH(QString, fields);
        const auto found = divided(lines, bytes, borders);
        if (!fields.isEmpty())
            QVERIFY(found);
        if (!found)
            return;
        QStringList filled = *found;
        filled.removeAll(QString());
        if (!fields.isEmpty())
            QCOMPARE(filled.join(u'/'), fields);
        for (qsizetype i = 0; i < found->size(); ++i)
            QVERIFY(text::cp932Bytes(found->at(i)) <= bytes[i]);
        const auto withoutBlanks = [](QString text) { return text.remove(u' ').remove(u'　'); };
        QCOMPARE(withoutBlanks(found->join(QString())), withoutBlanks(lines.join(QString())));
    }

    void queriedIsWhatTheCarrierGetsNext()
    {
        FreshShop shop;
        for (const QString &method : {u"宅急便"_s, u"佐川急便"_s, u"宅急便　コレクト"_s, u"宛名ラベル"_s})
            kept(shop, hurriedShipment(method));
        Shipment late = hurriedShipment();
        late.accepted = QDate(2026, 4, 2);
        kept(shop, late);
        const QDate day(2026, 4, 1);
        const auto keys = [&](const CarrierQuery &query) {
            QStringList ids;
            const auto found = shipmentsFor(shop.connection, query);
            for (const Shipment &shipment : *found)
                ids << QString::number(shipment.id);
            return ids.join(u' ');
        };
        QCOMPARE(keys({B2Cloud, day, day}), u"1 3"_s);
        QCOMPARE(keys({B2Cloud, day, QDate(2026, 4, 2), false, true}), u"1 3 4 5"_s);
        const auto first = shipmentsOf(shop.connection, {1, 99});
        QCOMPARE(first->size(), 1U);
        QVERIFY(markExported(shop.connection, {parcel(first->front())}, day));
        QCOMPARE(keys({B2Cloud, day, day}), u"3"_s);
        QCOMPARE(keys({B2Cloud, day, day, true}), u"1 3"_s);
        QCOMPARE(*changedSince(shop.connection, {parcel(first->front())}), std::vector<qint64>{1});
    }
};

QTEST_GUILESS_MAIN(TestCarrierFiles)

#include "tst_carrier_files.moc"

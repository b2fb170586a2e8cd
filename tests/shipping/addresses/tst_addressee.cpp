#include "shipping/addresses/addressee.h"

#include "registers/lists/supplementary_file.h"
#include "support/fresh_shop.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace shipping;

namespace
{

/// "company/section/name|name"
QString inWords(const Addressee &addressee, bool honours = true)
{
    const AddressWords words = addressWords(addressee, honours);
    return words.company + u'/' + words.section + u'/' + words.names.join(u'|');
}

/// The customer whose columns are divided by "|": three name lines, 敬称, 担当者名.
AddressRow customer(const QString &typed)
{
    const QStringList parts = typed.split(u'|');
    return {.id = 1,
            .name1 = parts.value(0),
            .name2 = parts.value(1),
            .name3 = parts.value(2),
            .zip = u"380-0821"_s,
            .address1 = u"長野市"_s,
            .address2 = {},
            .contact = parts.value(4),
            .honorific = parts.value(3)};
}

} // namespace

class TestAddressee : public QObject
{
    Q_OBJECT

private slots:
    void whoIsMeantAndHowHeIsAddressed_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("written");
        const auto row = [](const char16_t *typed, const char16_t *written) {
            QTest::newRow(qPrintable(QString::fromUtf16(typed)))
                << QString::fromUtf16(typed) << QString::fromUtf16(written);
        };
        // Persons.
        row(u"高橋 花子", u"//高橋　花子　様");
        row(u"鈴木　様", u"//鈴木　様");
        row(u"鈴木一郎様||", u"//鈴木一郎　様");
        row(u"田中先生||", u"//田中　先生");
        row(u"土屋", u"//土屋　様");
        row(u"小園　実", u"//小園　実　様");
        row(u"山田　太郎|||殿", u"//山田　太郎　殿");
        row(u"佐藤　医師|||先生", u"//佐藤　医師　先生");
        row(u"佐藤　花|||なし", u"//佐藤　花");
        row(u"様", u"//様　様"); // nothing is before it
        // Firms.
        row(u"㈱ﾔﾏﾀﾞ商会", u"//㈱ヤマダ商会　御中");
        row(u"(株)山田", u"//（株）山田　御中");
        row(u"山田商店", u"//山田商店　御中");
        row(u"長野りんご会", u"//長野りんご会　御中");
        row(u"土屋旅館", u"//土屋旅館　御中");
        row(u"八百屋", u"//八百屋　御中");
        row(u"ホテル白樺", u"//ホテル白樺　御中");
        row(u"喫茶ｷｬｯﾁｰ", u"//喫茶キャッチー　御中");
        row(u"白樺|調理部", u"白樺/調理部　御中/");
        row(u"有限会社みすず|||様", u"//有限会社みすず　様");
        row(u"有限会社みすず御中", u"//有限会社みすず　御中");
        row(u"ABC Co.,Ltd.", u"//ＡＢＣ　Ｃｏ．，Ｌｔｄ．　御中");
        // Firms with more lines.
        row(u"株式会社山田商店|営業部", u"株式会社山田商店/営業部　御中/");
        row(u"株式会社山田商店|長野支店|総務課", u"株式会社山田商店/長野支店　総務課　御中/");
        row(u"株式会社山田商店|営業部　山田太郎", u"株式会社山田商店/営業部/山田太郎　様");
        row(u"株式会社山田商店|営業部|山田 太郎 様", u"株式会社山田商店/営業部/山田　太郎　様");
        row(u"株式会社山田商店御中|山田　太郎", u"株式会社山田商店//山田　太郎　様");
        row(u"株式会社山田商店|山田　太郎||御中", u"株式会社山田商店//山田　太郎　様");
        row(u"みなみ歯科医院|中村　誠||先生", u"みなみ歯科医院//中村　誠　先生");
        row(u"株式会社山田商店||||経理 御担当者様", u"株式会社山田商店//経理　御担当者　様");
        row(u"株式会社山田商店||||営業課 佐々木", u"株式会社山田商店/営業課/佐々木　様");
        row(u"株式会社山田商店||||営業部", u"株式会社山田商店/営業部　御中/");
        row(u"木村水産株式会社|仙台営業所 営業課 佐々木", u"木村水産株式会社/仙台営業所　営業課/佐々木　様");
        row(u"木村水産株式会社|営業部長 阿部 太郎", u"木村水産株式会社/営業部長/阿部　太郎　様");
        row(u"木村水産株式会社|代表取締役|木村 進", u"木村水産株式会社/代表取締役/木村　進　様");
        row(u"木村水産株式会社|仙台支店|支店長", u"木村水産株式会社/仙台支店/支店長　様");
        row(u"木村水産株式会社|阿部 太郎", u"木村水産株式会社//阿部　太郎　様");
        row(u"木村水産株式会社|経理課 仁科", u"木村水産株式会社/経理課/仁科　様");
        row(u"木村水産株式会社|服部", u"木村水産株式会社//服部　様");
        row(u"国立研究開発法人りんご総合研究機構|代表取締役社長兼最高経営責任者 長宗我部 権左衛門之助",
            u"国立研究開発法人りんご総合研究機構/代表取締役社長兼最高経営責任者/長宗我部　権左衛門之助　様");
        // Persons with more lines.
        row(u"木村 進|営業部長|木村水産株式会社", u"木村水産株式会社/営業部長/木村　進　様");
        row(u"白樺|店長 小林", u"白樺/店長/小林　様");
        row(u"鈴木 一郎|阿部 花", u"//鈴木　一郎　様|阿部　花　　様");
        row(u"山田 太郎|株式会社みすず", u"株式会社みすず//山田　太郎　様");
        row(u"山田 太郎|花子", u"//山田　太郎　様|　　　花子　様");
        row(u"山田 太郎|山田花子|健太郎", u"//山田　太郎　　様|　　　花子　　様|　　　健太郎　様");
        row(u"山田 太郎|佐々木 花", u"//山田　　太郎　様|佐々木　花　　様");
        row(u"中村 誠|恵||先生", u"//中村　誠　先生|　　　恵　様　");
        row(u"", u"//");
        row(u"　|  |", u"//");
    }

    void whoIsMeantAndHowHeIsAddressed()
    {
        QFETCH(QString, typed);
        QTEST(inWords(addresseeOf(customer(typed), true)), "written");
    }

    void withoutHonorificsByChoice()
    {
        QCOMPARE(inWords(addresseeOf(customer(u"鈴木様"_s), false), false), u"//鈴木"_s);
        QCOMPARE(inWords(addresseeOf(customer(u"㈱山田御中||||小林"_s), false), false), u"//㈱山田"_s);
    }

    void postalCodesInAnyShape_data()
    {
        QTest::addColumn<QString>("zip");
        QTest::addColumn<QString>("digits");
        QTest::addColumn<bool>("isDoubted");
        QTest::newRow("usual") << u"380-0821"_s << u"3800821"_s << false;
        QTest::newRow("full width") << u"〒３８０ー０８２１"_s << u"3800821"_s << false;
        QTest::newRow("in one") << u"3800821"_s << u"3800821"_s << false;
        QTest::newRow("blank") << u"380 0821"_s << u"3800821"_s << false;
        QTest::newRow("five digits") << u"380-08"_s << QString() << true;
        QTest::newRow("eight digits") << u"380-08211"_s << QString() << true;
        QTest::newRow("shifted hyphen") << u"3800-821"_s << QString() << true;
        QTest::newRow("letter for a digit") << u"38O-0821"_s << QString() << true;
        QTest::newRow("none") << u" "_s << QString() << true;
    }

    void postalCodesInAnyShape()
    {
        QFETCH(QString, zip);
        AddressRow row = customer(u"鈴木"_s);
        row.zip = zip;
        QTEST(postalDigits(zip), "digits");
        QTEST(!addressDoubt(addresseeOf(row, false)).isEmpty(), "isDoubted");
    }

    void whoCannotBeAddressed()
    {
        QVERIFY(addressDoubt(addresseeOf(customer(QString(201, u'寿')), false)).contains(u"203 文字"_s));
        AddressRow row = customer(u"　"_s);
        QCOMPARE(addressLack(addresseeOf(row, false)), u"名前がありません"_s);
        row = customer(u"鈴木"_s);
        QCOMPARE(addressLack(addresseeOf(row, false)), QString());
        row.address1 = u" "_s;
        QCOMPARE(addressLack(addresseeOf(row, false)), u"住所がありません"_s);
    }

    void aRosterKeepsTheKeysOfThoseWhoAreTheSame();
};

// Renamed or deleted meanwhile, a customer is addressed all the same, and nobody else gets his mark.
void TestAddressee::aRosterKeepsTheKeysOfThoseWhoAreTheSame()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 住所1, 敬称) VALUES (1, '山田', '長野市', '先生'), "
             "(2, '佐藤', '松本市', ''), (3, '高橋', '上田市', NULL)"_s);
    const QString file = shop.path(u"roster.cdb"_s);
    QVERIFY(registers::writeSupplementaryFile(shop.connection, {1, 2, 3}, file));
    shop.run(u"UPDATE 納品先 SET 納品先名1 = '加藤' WHERE 納品先ID = 2"_s);
    shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 3"_s);
    const auto rows = readRosterRows(shop.connection, file);
    QVERIFY2(rows, rows ? "" : qPrintable(rows.error().text));
    QStringList read;
    for (const AddressRow &row : *rows)
        read << row.name1 + u' ' + row.address1 + u' ' + row.honorific + u' ' + QString::number(row.id);
    QCOMPARE(read, (QStringList{u"山田 長野市 先生 1"_s, u"佐藤 松本市  0"_s, u"高橋 上田市  0"_s}));

    QFile none(shop.path(u"none.cdb"_s));
    QVERIFY(none.open(QIODevice::WriteOnly) && none.write("納品先,住所\n") > 0);
    none.close();
    QVERIFY(!readRosterRows(shop.connection, none.fileName()));
    QVERIFY(!readRosterRows(shop.connection, shop.path(u"missing.cdb"_s)));
    QVERIFY(!readRosterRows(shop.connection, shop.connection.fileName()));
}

QTEST_GUILESS_MAIN(TestAddressee)
#include "tst_addressee.moc"

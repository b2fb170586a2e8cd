#include "registers/postal/postal_address.h"
#include "registers/postal/postal_data.h"
#include "registers/postal/postal_dictionaries.h"
#include "registers/postal/postal_index.h"
#include "registers/postal/postal_lookup.h"
#include "text/cp932.h"

#include <QMap>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;
using namespace registers;

namespace
{

// A way of writing addresses: what stands for the area, and what follows.
struct Writing
{
    QString (*place)(const PostalArea &);
    const char16_t *before; // the town
    const char16_t *after;
};

QString whole(const PostalArea &area) { return area.prefecture + area.city; }

QString withoutPrefecture(const PostalArea &area) { return area.city; }

QString withoutCounty(const PostalArea &area)
{
    const bool isVillage = area.city.endsWith(u'町') || area.city.endsWith(u'村');
    return area.prefecture + (isVillage ? area.city.section(u'郡', -1) : area.city);
}

const QList<Writing> writings = {
    {whole, u"", u"3-12-5"},
    {whole, u"", u"３丁目１２番地５"},
    {withoutPrefecture, u"", u"3-12-5"},
    {withoutPrefecture, u"", u"１－２０　本町ビル３Ｆ"},
    {whole, u"大字", u"１２３番地"},
    {withoutCounty, u"", u"１２３"},
};

constexpr qsizetype samplesOfPrefecture = 18;

} // namespace

// The silent lookup on the files made of the real list.
class TestPostalNational : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyPrefecture();
    void hardOnes_data();
    void hardOnes();
    void areasOfACode();
    void wardsInTheWindow();
    void everyAddressFitsOnTwoLines();

private:
    QTemporaryDir m_dir;
    PostalSource m_source;
    PostalData m_data;
};

void TestPostalNational::initTestCase()
{
    auto source = readPostalDictionaries(QStringLiteral(POSTAL_DICTIONARIES), base::unwatched);
    QVERIFY2(source, qUtf8Printable(source ? QString() : source.error().text));
    m_source = std::move(*source);
    QVERIFY(m_source.areas.size() > 120000 && m_source.offices.size() > 20000);
    QCOMPARE(m_source.refused.count(), 0);
    QCOMPARE(m_source.prefectureCount(), 47);
    QVERIFY(writePostalData(m_source, m_dir.path(), base::unwatched));
    const auto index = loadPostalIndex(m_dir.filePath(u"ZIPID1.txt"_s));
    QVERIFY2(index, qUtf8Printable(index ? QString() : index.error().text));
    m_data = {m_dir.path(), std::make_shared<const PostalIndex>(*index)};
}

// Areas from all over each prefecture, written in turn in each of the ways. An area whose writing has several
// codes in the list is left out: the list does not determine it.
void TestPostalNational::everyPrefecture()
{
    QMap<QString, QList<const PostalArea *>> byPrefecture;
    QHash<QString, QString> codes; // empty: several
    for (const PostalArea &area : m_source.areas) {
        byPrefecture[area.prefecture] += &area;
        for (const auto place : {whole, withoutPrefecture, withoutCounty}) {
            QString &code = codes[place(area) + area.town];
            code = code.isNull() || code == area.code ? area.code : u""_s;
        }
    }
    int asked = 0;
    QStringList missed;
    for (const QList<const PostalArea *> &areas : std::as_const(byPrefecture)) {
        for (qsizetype sample = 0; sample < samplesOfPrefecture; ++sample) {
            const PostalArea &area = *areas[sample * areas.size() / samplesOfPrefecture];
            const Writing &writing = writings[sample % writings.size()];
            const QString place = writing.place(area);
            if (codes[place + area.town].isEmpty())
                continue;
            const QString address = place +
                                    (area.town.isEmpty() ? QString() : QString::fromUtf16(writing.before)) +
                                    area.town + QString::fromUtf16(writing.after);
            const QString code = postalCodeOf(m_data, address);
            ++asked;
            if (code != withHyphen(area.code))
                missed += address + u" is "_s + area.code + u", not "_s + code;
        }
    }
    qInfo("%d addresses, %d missed", asked, int(missed.size()));
    QVERIFY(asked > 750);
    QVERIFY2(missed.size() * 1000 <= asked, qUtf8Printable(missed.join(u'\n')));
}

void TestPostalNational::hardOnes_data()
{
    QTest::addColumn<QString>("code");
    const auto row = [](const char16_t *address, const char16_t *code) {
        QTest::newRow(qUtf8Printable(QString::fromUtf16(address))) << QString::fromUtf16(code);
    };
    // Spellings
    row(u"東京都千代田区霞ヶ関１－２－１", u"100-0013");
    row(u"千代田区霞ケ関1-2-1", u"100-0013");
    row(u"東京都千代田区丸ノ内2-1-1", u"100-0005");
    row(u"東京都港区虎の門1-1", u"105-0001");
    row(u"茨城県竜ヶ崎市3710", u"301-0000");
    row(u"神奈川県茅ケ崎市幸町1-1", u"253-0052");
    row(u"北海道札幌市北区北10条西3丁目", u"001-0010");
    row(u"札幌市北区北１０条西３丁目", u"001-0010");
    row(u"ニセコ町字富士見47", u"048-1501");
    row(u"北海道虻田郡ニセコ町大字富士見47", u"048-1501");
    row(u"東京都杉並区阿佐ケ谷南1-15-1", u"166-0004");
    row(u"杉並区阿佐が谷南１丁目", u"166-0004");
    row(u"東京都大田区雪ガ谷大塚町1", u"145-0067");
    row(u"東京都新宿区四ッ谷1-1", u"160-0004");
    row(u"新宿区四ツ谷1-1", u"160-0004");
    row(u"東京都千代田区麴町1-1", u"102-0083");
    row(u"渋谷区恵比須1-1", u"150-0013");
    row(u"宮城県塩釜市本町1-1", u"985-0052");
    row(u"宮城県鹽竈市本町1-1", u"985-0052");
    row(u"高知県高岡郡梼原町太郎川", u"785-0621");
    row(u"福岡県糟屋郡須恵町須恵771", u"811-2113");
    row(u"千葉県鎌ガ谷市中央1", u"273-0124");
    row(u"横浜市保土ガ谷区岩間町1-1", u"240-0004");
    row(u"東京都　杉並区　阿佐ヶ谷南　1-15-1", u"166-0004");
    // 字 behind the name of what was a town once
    row(u"宮城県登米市迫町字佐沼1", u"987-0511");
    row(u"岩手県奥州市水沢字大町1", u"023-0045");
    row(u"岩手県奥州市江刺字岩谷堂1-2", u"023-1101");
    row(u"福島県伊達市保原町字大泉1", u"960-0634");
    // Wards that were divided anew
    row(u"静岡県浜松市中央区板屋町100", u"430-0928");
    row(u"浜松市中央区鍛冶町1-1", u"430-0933");
    row(u"浜松市浜名区細江町気賀1", u"431-1305");
    row(u"静岡県浜松市中央区上島１－２－３", u"433-8122");
    row(u"浜松市中区上島1-2-3", u"433-8122");
    row(u"静岡県 浜松市 浜北区 上島", u"434-0011");
    row(u"浜松市浜名区上島5", u"434-0011");
    row(u"浜松市北区三方原町100", u"433-8105");
    row(u"浜松市中央区三方原町100", u"433-8105");
    row(u"静岡県浜松市北区引佐町金指", u"431-2213");
    row(u"静岡県浜松市中央区鍛治町", u"432-0000");
    row(u"北海道　札幌市　中央区　北1条西2", u"060-0001");
    // Cities whose names hold others, or that towns hold
    row(u"滋賀県草津市草津1", u"525-0034");
    row(u"草津市草津1", u"525-0034");
    row(u"津市中央1-1", u"514-0032");
    row(u"上尾市原市1-1", u"362-0021");
    row(u"橿原市太田市町1", u"634-0001");
    row(u"四日市市諏訪町1-5", u"510-0085");
    row(u"廿日市市下平良1-11-1", u"738-0023");
    row(u"東村山市本町1-2-3", u"189-0014");
    row(u"大和郡山市北郡山町248-4", u"639-1160");
    // Names that several places share
    row(u"府中市宮西町2-24", u"183-0022");
    row(u"府中市府川町315", u"726-0004");
    row(u"中央区銀座4-5-11", u"104-0061");
    row(u"中央区北一条西2", u"060-0001");
    row(u"新宿区市谷薬王寺町1", u"162-0063");
    row(u"中央区明石町1", u"");
    row(u"北区1-1", u"");
    row(u"富士見町3-5", u"");
    // Parts left out
    row(u"神奈川県横浜市青葉台2-1", u"227-0062");
    row(u"長野県富士見町立沢10777", u"399-0212");
    row(u"栄区長沼町1", u"244-0841");
    row(u"音更町雄飛が丘南区1", u"080-0333");
    row(u"西海市大島町塩田1", u"857-2424");
    row(u"東京都利島村1番地", u"100-0301");
    // Kyoto's crossings
    row(u"京都市中京区寺町通御池上る上本能寺前町488", u"604-0925");
    row(u"京都府京都市中京区寺町通御池上ル上本能寺前町488", u"604-0925");
    // The most specific one, and a name that fills the record
    row(u"秋田県横手市十文字町西原2番町1", u"019-0502");
    row(u"東京都千代田区丸の内パシフィックセンチュリープレイス丸の内１７階", u"100-6217");
    row(u"福岡県", u"");
    // A village that has become a town, and another town of its name in another prefecture
    row(u"福岡県筑紫郡那珂川町西隈1-1", u"");
    row(u"東京都筑紫郡 那珂川町片縄1", u"");
    row(u"筑紫郡那珂川町西隈1-1", u"");
    row(u"埼玉県大宮市桜木町1", u"");
}

void TestPostalNational::hardOnes()
{
    QTEST(postalCodeOf(m_data, QString::fromUtf8(QTest::currentDataTag())), "code");
}

// Each area once, in its official writing.
void TestPostalNational::areasOfACode()
{
    QVERIFY(isGeneralFor(m_data, u"906-0000"_s, u"906-0012"_s));
    QVERIFY(isGeneralFor(m_data, u"166-0000"_s, u"166-0004"_s));
    QVERIFY(!isGeneralFor(m_data, u"906-0013"_s, u"906-0012"_s));
    QVERIFY(!isGeneralFor(m_data, u"906-0000"_s, u"166-0004"_s));

    const auto addresses = addressesOf(m_data, u"301-0000"_s);
    QVERIFY(addresses);
    QCOMPARE(*addresses, QStringList{u"茨城県龍ケ崎市"_s});
    QCOMPARE(*addressesOf(m_data, u"227-0062"_s), QStringList{u"神奈川県横浜市青葉区青葉台"_s});
    QCOMPARE(*addressesOf(m_data, u"433-8122"_s), QStringList{u"静岡県浜松市中央区上島"_s});
    QCOMPARE(*addressesOf(m_data, u"432-0000"_s),
             (QStringList{u"静岡県浜松市中央区"_s, u"静岡県浜松市天竜区"_s}));
}

// What the window lists.
void TestPostalNational::wardsInTheWindow()
{
    for (const QString &typed :
         {u"静岡県浜松市中央区上島１－２－３"_s, u"浜松市中央区上島"_s, u"浜松市中区上島"_s}) {
        const auto finds = searchAreas(m_data, typed, base::unwatched);
        QVERIFY(finds);
        QCOMPARE(finds->code, u"433-8122"_s);
        QVERIFY2(std::ranges::all_of(finds->lines,
                                     [](const QString &line) { return line.contains(u"浜松市中央区"); }),
                 qUtf8Printable(finds->lines.join(u'\n')));
    }
}

// Of 22 characters each; the wide ones are divided behind the city, but for towers with long names.
void TestPostalNational::everyAddressFitsOnTwoLines()
{
    int wide = 0;
    QStringList elsewhere;
    for (const PostalArea &area : m_source.areas) {
        const QString address = whole(area) + area.town;
        const AddressLines lines = dividedAddress(m_data, address, 44);
        QCOMPARE(lines.first + lines.second, address);
        QVERIFY2(text::cp932Bytes(lines.first) <= 44 && text::cp932Bytes(lines.second) <= 44,
                 qUtf8Printable(address));
        wide += lines.second.isEmpty() ? 0 : 1;
        if (!lines.second.isEmpty() && lines.first != whole(area))
            elsewhere << lines.first;
    }
    QVERIFY(wide > 1000);
    elsewhere.removeDuplicates();
    QCOMPARE(elsewhere, QStringList{u"東京都千代田区丸の内"_s});
}

QTEST_GUILESS_MAIN(TestPostalNational)
#include "tst_postal_national.moc"

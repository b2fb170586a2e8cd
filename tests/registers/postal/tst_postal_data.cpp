#include "registers/postal/postal_csv.h"
#include "registers/postal/postal_data.h"
#include "registers/postal/postal_dictionaries.h"
#include "registers/postal/postal_origin.h"
#include "registers/postal/postal_spellings.h"
#include "text/cp932.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;
using namespace registers;

namespace
{

// An area line of the postal service, with the columns that count.
QString areaLine(const QString &code, const QString &prefecture, const QString &city, const QString &town,
                 const QString &update = u"0"_s)
{
    return u"01101,\"060  \",\"%1\",\"ｶﾅ\",\"ｶﾅ\",\"ｶﾅ\",\"%2\",\"%3\",\"%4\",0,0,0,0,%5,0\r\n"_s.arg(
        code, prefecture, city, town, update);
}

QString officeLine(const QString &code, const QString &name)
{
    return u"01101,\"ｶﾅ\",\"%2\",\"東京都\",\"港区\",\"芝公園\",\"４丁目２−８\",\"%1\",\"105  \",\"芝\",0,0,0\r\n"_s
        .arg(code, name);
}

void write(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString areasOf(const PostalSource &source)
{
    QStringList texts;
    for (const PostalArea &area : source.areas)
        texts += area.code + u' ' + area.prefecture + u'|' + area.city + u'|' + area.town;
    return texts.join(u'/');
}

PostalSource areas(const QList<PostalArea> &list)
{
    PostalSource source;
    source.areas.assign(list.begin(), list.end());
    return source;
}

} // namespace

class TestPostalData : public QObject
{
    Q_OBJECT

private slots:
    void townOfALine_data();
    void townOfALine();
    void csvLines_data();
    void csvLines();
    void damagedLists_data();
    void damagedLists();
    void dictionaryLines_data();
    void dictionaryLines();
    void damagedDictionaries_data();
    void damagedDictionaries();
    void spellings_data();
    void spellings();
    void filesHaveTheirForms();
    void longAndStrangeNames();
    void allFilesOrNone();
    void stoppingChangesNothing();
    void listsReplaceOnlyTheirOwn();
    void brokenOffListsAreDoubted();
    void delivery_data();
    void delivery();

private:
    QTemporaryDir m_dir;
};

void TestPostalData::townOfALine_data()
{
    QTest::addColumn<QString>("town");
    const auto row = [](const char16_t *written, const char16_t *town) {
        QTest::newRow(qUtf8Printable(QString::fromUtf16(written))) << QString::fromUtf16(town);
    };
    row(u"以下に掲載がない場合", u"");
    row(u"琴平町の次に１〜４２６番地がくる場合（川東）", u"");
    row(u"小笠原村一円", u"");
    row(u"一円", u"一円");
    row(u"北一条西（１〜１９丁目）", u"北一条西");
    row(u"協和（８８−２、２７１−１０（峰越）、３４３番地）", u"協和");
    row(u"名駅ミッドランドスクエア（高層棟）（１２階）", u"名駅ミッドランドスクエア高層棟１２階");
    row(u"名駅ミッドランドスクエア（高層棟）（地階・階層不明）", u"名駅ミッドランドスクエア");
    row(u"本町（１、２", u"本町");
}

void TestPostalData::townOfALine()
{
    QFETCH(QString, town);
    QCOMPARE(townOfCsv(QString::fromUtf8(QTest::currentDataTag()), u"小笠原村"_s), town);
}

void TestPostalData::csvLines_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("read");
    QTest::addColumn<int>("offices");
    QTest::addColumn<int>("refused");
    const QString good = areaLine(u"1050011"_s, u"東京都"_s, u"港区"_s, u"芝公園"_s);
    const QString read = u"1050011 東京都|港区|芝公園"_s;

    QTest::newRow("area") << good << read << 0 << 0;
    QTest::newRow("office") << officeLine(u"1058001"_s, u"塔 株式会社"_s) << QString() << 1 << 0;
    QTest::newRow("both kinds") << good + officeLine(u"1058001"_s, u"塔"_s) << read << 1 << 0;
    QTest::newRow("three lines of one town")
        << areaLine(u"0660005"_s, u"北海道"_s, u"千歳市"_s, u"協和（８８、２７１、"_s) +
               areaLine(u"0660005"_s, u"北海道"_s, u"千歳市"_s, u"１（峰）、"_s) +
               areaLine(u"0660005"_s, u"北海道"_s, u"千歳市"_s, u"４０４）"_s) + good
        << u"0660005 北海道|千歳市|協和/"_s + read << 0 << 0;
    QTest::newRow("bracket that never closes")
        << areaLine(u"0660005"_s, u"北海道"_s, u"千歳市"_s, u"協和（８８"_s) + good
        << u"0660005 北海道|千歳市|協和/"_s + read << 0 << 0;
    QTest::newRow("six digits") << good + areaLine(u"105001"_s, u"東京都"_s, u"港区"_s, u"芝"_s) << read << 0
                                << 1;
    QTest::newRow("wide digits") << good + areaLine(u"１０５００１１"_s, u"東京都"_s, u"港区"_s, u"芝"_s)
                                 << read << 0 << 1;
    QTest::newRow("no prefecture") << good + areaLine(u"1050011"_s, u"東京"_s, u"港区"_s, u"芝"_s) << read
                                   << 0 << 1;
    QTest::newRow("no city") << good + areaLine(u"1050011"_s, u"東京都"_s, {}, u"芝"_s) << read << 0 << 1;
    QTest::newRow("abolished") << good + areaLine(u"1050012"_s, u"東京都"_s, u"港区"_s, u"芝"_s, u"2"_s)
                               << read << 0 << 1;
    QTest::newRow("office without name") << good + officeLine(u"1058001"_s, {}) << read << 0 << 1;
    QTest::newRow("14 columns") << good + good.section(u',', 1) << read << 0 << 1;
    QTest::newRow("cut in the middle of a line") << good + good.first(50) << read << 0 << 1;
    QTest::newRow("cut within quotes") << good + good.first(20) << read << 0 << 1;
}

void TestPostalData::csvLines()
{
    QFETCH(QString, text);
    QFETCH(QString, read);
    const QString fileName = m_dir.filePath(u"list.csv"_s);
    for (const QByteArray &content : {text.toUtf8(), text::toCp932(text).value()}) {
        write(fileName, content);
        const auto source = readPostalCsv(fileName, base::unwatched);
        QVERIFY2(source, qUtf8Printable(source ? QString() : source.error().text));
        QCOMPARE(areasOf(*source), read);
        QTEST(int(source->offices.size()), "offices");
        QTEST(source->refused.count(), "refused");
    }
}

void TestPostalData::damagedLists_data()
{
    QTest::addColumn<QByteArray>("content");
    QByteArray rubbish;
    for (int i = 0; i < 5000; ++i)
        rubbish += static_cast<char>(i * 7919 >> 3);
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("rubbish") << rubbish;
    QTest::newRow("zip") << QByteArray("PK\x03\x04\x14\0\0\0\x08\0\xff\xfe", 12);
    QTest::newRow("one line") << QByteArray("hello\r\n");
    QTest::newRow("another table") << QByteArray("name,zip\r\nA,1000001\r\nB,1000002\r\n");
    QTest::newRow("headings only") << QByteArray("1,2,3,4,5,6,7,8,9,10,11,12,13,14,15\r\n");
    QTest::newRow("quotes only") << QByteArray(4000, '"');
    QTest::newRow("commas only") << QByteArray(4000, ',');
}

void TestPostalData::damagedLists()
{
    QFETCH(QByteArray, content);
    const QString fileName = m_dir.filePath(u"damaged.csv"_s);
    write(fileName, content);
    const auto source = readPostalCsv(fileName, base::unwatched);
    QVERIFY(!source);
    QVERIFY2(
        source.error().text.contains(u"郵便番号データ（utf_ken_all.csv、KEN_ALL.CSV、JIGYOSYO.CSV）では"),
        qUtf8Printable(source.error().text));
    QVERIFY(!readPostalCsv(m_dir.path(), base::unwatched));
}

void TestPostalData::dictionaryLines_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("read");
    QTest::addColumn<int>("refused");
    const auto row = [](const char *name, const char16_t *line, const char16_t *read, int refused) {
        QTest::newRow(name) << QString::fromUtf16(line) << QString::fromUtf16(read) << refused;
    };
    row("two of one code", u"0482402 /北海道余市郡余市町/北海道余市郡余市町黒川/",
        u"0482402 北海道|余市郡余市町|/0482402 北海道|余市郡余市町|黒川", 0);
    row("annotation", u"0482402 /北海道余市郡余市町;注/", u"0482402 北海道|余市郡余市町|", 0);
    row("comment", u";; 0482402 /北海道/", u"", 0);
    row("rest of a note",
        u"7660002 /香川県仲多度郡琴平町/香川県仲多度郡琴平町琴平町の次に１番地がくる場合川東/",
        u"7660002 香川県|仲多度郡琴平町|/7660002 香川県|仲多度郡琴平町|", 0);
    row("brackets", u"4506201 /愛知県名古屋市中村区/愛知県名古屋市中村区名駅高層棟）（１階/",
        u"4506201 愛知県|名古屋市中村区|/4506201 愛知県|名古屋市中村区|名駅高層棟１階", 0);
    row("no prefecture", u"0482402 /余市町/", u"", 1);
    row("no city", u"0482402 /北海道どこか/", u"", 1);
    row("six digits", u"048240 /北海道余市郡余市町/", u"", 1);
    row("no slashes", u"0482402 北海道余市郡余市町", u"", 1);
    row("nothing between", u"0482402 //", u"", 1);
    row("code alone", u"0482402", u"", 1);
}

void TestPostalData::dictionaryLines()
{
    QFETCH(QString, line);
    const PostalSource source = areasOfDictionary(line + u'\n');
    QTEST(areasOf(source), "read");
    QTEST(source.refused.count(), "refused");
    QVERIFY(officesOfDictionary(line + u'\n').offices.empty());
}

void TestPostalData::damagedDictionaries_data()
{
    QTest::addColumn<QByteArray>("areas");
    QTest::addColumn<QByteArray>("offices");
    const QByteArray good = u"1000000 /東京都千代田区/\n"_s.toUtf8();
    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("no offices") << good << QByteArray(";; nothing\n");
    QTest::newRow("no areas") << QByteArray(";; nothing\n") << u"1008994 /塔 @ 東京都/\n"_s.toUtf8();
    QTest::newRow("half a character") << good + "1000001 /\xc5" << good;
}

void TestPostalData::damagedDictionaries()
{
    QFETCH(QByteArray, areas);
    QFETCH(QByteArray, offices);
    write(m_dir.filePath(u"SKK-JISYO.zipcode"_s), areas);
    write(m_dir.filePath(u"SKK-JISYO.office.zipcode"_s), offices);
    QVERIFY(!readPostalDictionaries(m_dir.path(), base::unwatched));
}

void TestPostalData::spellings_data()
{
    QTest::addColumn<QString>("other");
    const auto row = [](const char16_t *name, const char16_t *other) {
        QTest::addRow("%s", qUtf8Printable(QString::fromUtf16(name) + u' ' + QString::fromUtf16(other)))
            << QString::fromUtf16(other);
    };
    row(u"霞が関", u"霞ヶ関");
    row(u"つつじケ丘", u"つつじが丘");
    row(u"丸の内", u"丸ノ内");
    row(u"虎ノ門", u"虎の門");
    row(u"北二十一条西", u"北21条西");
    row(u"北十条西", u"北１０条西");
    row(u"西原２番町", u"西原2番町");
    row(u"西原２番町", u"西原二番町");
    row(u"龍ケ岳町", u"竜ヶ岳町");
    row(u"三ケ", u"三ヶ");
}

void TestPostalData::spellings()
{
    QFETCH(QString, other);
    const QString name = QString::fromUtf8(QTest::currentDataTag()).section(u' ', 0, 0);
    QCOMPARE(townSpellings(name).first(), name);
    QVERIFY2(townSpellings(name).contains(other), qUtf8Printable(townSpellings(name).join(u' ')));
    for (const char16_t *plain : {u"ガス橋", u"この花", u"三鷹", u"マリンガーデン"})
        QCOMPARE(townSpellings(QString::fromUtf16(plain)).size(), 1);
}

// What reads the files reads them by these forms.
void TestPostalData::filesHaveTheirForms()
{
    PostalSource source = areas({{u"1000000"_s, u"東京都"_s, u"千代田区"_s, {}},
                                 {u"1000013"_s, u"東京都"_s, u"千代田区"_s, u"霞が関"_s}});
    source.offices = {{u"1008994"_s, u"\"塔\", 株式会社"_s, u"東京都千代田区"_s}};
    QTemporaryDir dir;
    const auto report = writePostalData(source, dir.path(), base::unwatched);
    QVERIFY(report);
    const QByteArray table = contentOf(dir.filePath(u"ZIPCODE.txt"_s));
    QCOMPARE(table.size(), 70 * report->records);
    QCOMPARE(table.first(70), "1000000   " + text::toCp932(u"東京都千代田区"_s)->leftJustified(60, ' '));
    const QList<QByteArray> index = contentOf(dir.filePath(u"ZIPID1.txt"_s)).split('\n');
    QCOMPARE(index.first().trimmed(), *text::toCp932(u"\"東京都千代田区\",\"東京都千代田区\",1"_s));
    QCOMPARE(index.size() - 1, report->groups);
    QCOMPARE(contentOf(dir.filePath(u"ZipCode1.txt"_s)).split('\n').at(1).trimmed(),
             *text::toCp932(u"\"100-0013  東京都千代田区霞が関\""_s));
    QCOMPARE(contentOf(dir.filePath(u"ZIPCODE2.txt"_s)).trimmed(),
             *text::toCp932(u"\"100-8994  ”塔”, 株式会社　東京都千代田区\""_s));
}

void TestPostalData::longAndStrangeNames()
{
    const QString longName(40, u'長');
    const PostalSource source = areas({{u"1000001"_s, u"東京都"_s, u"千代田区"_s, longName},
                                       {u"1000002"_s, u"東京都"_s, u"千代田区"_s, u"𠮷野"_s},
                                       {u"1000003"_s, u"東京都"_s, u"千代田区"_s, u"𡚴原"_s},
                                       {u"1000004"_s, u"東京都"_s, u"千代田区"_s, u"有明 北"_s}});
    QTemporaryDir dir;
    const auto report = writePostalData(source, dir.path(), base::unwatched);
    QVERIFY(report);
    QVERIFY(report->shortened > 0 && report->replaced > 0);
    const QByteArray table = contentOf(dir.filePath(u"ZIPCODE.txt"_s));
    QCOMPARE(table.size() % 70, 0);
    for (const char16_t *part : {u"千代田区吉野", u"千代田区〓原", u"千代田区有明　北", u"千代田区長長"})
        QVERIFY2(table.contains(*text::toCp932(QString::fromUtf16(part))),
                 qUtf8Printable(QString::fromUtf16(part)));
}

void TestPostalData::allFilesOrNone()
{
    QTemporaryDir dir;
    const PostalSource first = areas({{u"1000001"_s, u"東京都"_s, u"千代田区"_s, u"千代田"_s}});
    QVERIFY(writePostalData(first, dir.path(), base::unwatched));
    const QByteArray table = contentOf(dir.filePath(u"ZIPCODE.txt"_s));
    const PostalOrigin origin = postalOriginOf(dir.path());
    // A folder in the place of the third file keeps the set from being replaced.
    QVERIFY(QFile::remove(dir.filePath(u"ZipCode1.txt"_s)));
    QVERIFY(QDir(dir.path()).mkdir(u"ZipCode1.txt"_s));
    const PostalSource second = areas({{u"1000013"_s, u"東京都"_s, u"千代田区"_s, u"霞が関"_s}});
    QVERIFY(!writePostalData(second, dir.path(), base::unwatched));
    QCOMPARE(contentOf(dir.filePath(u"ZIPCODE.txt"_s)), table);
    QCOMPARE(postalOriginOf(dir.path()).areas, origin.areas);
    QCOMPARE(QDir(dir.path()).entryList({u"*.new"_s, u"*.old"_s}, QDir::Files), QStringList());
    QVERIFY(!writePostalData(second, dir.filePath(u"nowhere"_s), base::unwatched));
}

void TestPostalData::stoppingChangesNothing()
{
    QTemporaryDir dir;
    const PostalSource source = areas({{u"1000001"_s, u"東京都"_s, u"千代田区"_s, u"千代田"_s}});
    const auto stopped = writePostalData(source, dir.path(), [](qint64, qint64) { return false; });
    QVERIFY(!stopped && stopped.error().cancelled);
    QVERIFY(QDir(dir.path()).isEmpty());
}

void TestPostalData::listsReplaceOnlyTheirOwn()
{
    QTemporaryDir dir;
    PostalSource source = areas({{u"1000001"_s, u"東京都"_s, u"千代田区"_s, u"千代田"_s}});
    QVERIFY(writePostalData(source, dir.path(), base::unwatched));
    QCOMPARE(contentOf(dir.filePath(u"ZIPCODE2.txt"_s)), QByteArray());
    const QByteArray index = contentOf(dir.filePath(u"ZIPID1.txt"_s));

    PostalSource offices;
    offices.offices = {{u"1008994"_s, u"塔"_s, u"東京都"_s}};
    offices.officesFrom = PostalPublisher::PostalService;
    QVERIFY(writePostalData(offices, dir.path(), base::unwatched));
    QCOMPARE(contentOf(dir.filePath(u"ZIPID1.txt"_s)), index);
    QVERIFY(contentOf(dir.filePath(u"ZIPCODE2.txt"_s)).contains("100-8994"));
    QVERIFY(postalOriginOf(dir.path()).areas.startsWith(u"dictionary:"));
    QVERIFY(postalOriginOf(dir.path()).offices.startsWith(u"postal-service:"));
}

void TestPostalData::brokenOffListsAreDoubted()
{
    PostalSource source;
    for (int area = 0; area < 110'000; ++area)
        source.areas.push_back({u"1000001"_s, QString::number(area % 47), u"市"_s, u"町"_s});
    QCOMPARE(postalDoubt(source), QString());
    source.areas.resize(109'999);
    QVERIFY(postalDoubt(source).contains(u"109,999"_s));
    source.areas.resize(46);
    QVERIFY(postalDoubt(source).contains(u"46都道府県"_s));
    source.areas.clear(); // offices alone
    QCOMPARE(postalDoubt(source), QString());
}

void TestPostalData::delivery_data()
{
    QTest::addColumn<QString>("origin"); // of the folder's areas; empty: no note
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QByteArray>("index"); // what the folder has then
    const QStringList all = {u"ZIPCODE.txt"_s, u"ZIPID1.txt"_s, u"ZipCode1.txt"_s, u"ZIPCODE2.txt"_s};
    QTest::newRow("nothing yet") << QString() << QStringList() << QByteArray("new");
    QTest::newRow("older delivery") << u"dictionary:1"_s << all << QByteArray("new");
    QTest::newRow("the same delivery") << u"dictionary:2"_s << all << QByteArray("own");
    QTest::newRow("broken off") << u"dictionary:incomplete"_s << all << QByteArray("new");
    QTest::newRow("the user's list") << u"postal-service:1"_s << all << QByteArray("own");
    QTest::newRow("put there by hand") << QString() << all << QByteArray("own");
    QTest::newRow("index without table") << QString() << QStringList{u"ZIPID1.txt"_s} << QByteArray("new");
    QTest::newRow("user's list without table")
        << u"postal-service:1"_s << QStringList{u"ZIPID1.txt"_s} << QByteArray("new");
}

void TestPostalData::delivery()
{
    QFETCH(QString, origin);
    QFETCH(QStringList, files);
    QTemporaryDir source;
    QTemporaryDir folder;
    for (const char16_t *name : {u"ZIPCODE.txt", u"ZIPID1.txt", u"ZipCode1.txt", u"ZIPCODE2.txt"})
        write(source.filePath(QString::fromUtf16(name)), "new");
    QVERIFY(replacePostalFiles(source.path(), {}, {u"dictionary:2"_s, u"dictionary:2"_s}));
    for (const QString &name : std::as_const(files))
        write(folder.filePath(name), "own");
    if (!origin.isEmpty())
        QVERIFY(replacePostalFiles(folder.path(), {}, {origin, origin}));

    QVERIFY(bringPostalData(source.path(), folder.path()));
    QTEST(contentOf(folder.filePath(u"ZIPID1.txt"_s)), "index");
    QCOMPARE(contentOf(folder.filePath(u"ZIPCODE.txt"_s)), contentOf(folder.filePath(u"ZIPID1.txt"_s)));
    const PostalOrigin before = postalOriginOf(folder.path());
    QVERIFY(bringPostalData(source.path(), folder.path()));
    QCOMPARE(postalOriginOf(folder.path()).areas, before.areas);
}

QTEST_GUILESS_MAIN(TestPostalData)
#include "tst_postal_data.moc"

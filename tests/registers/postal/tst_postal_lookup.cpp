#include "registers/postal/postal_areas.h"
#include "registers/postal/postal_lookup.h"
#include "support/postal_files.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QList<PostalFiles::Group> groups = {
    {u"北海道伊達市"_s, u"伊達市"_s, {{"0520000", u"北海道伊達市"_s}, {"0520024", u"北海道伊達市鹿島町"_s}}},
    {u"福島県伊達市"_s,
     u"伊達市"_s,
     {{"9600000", u"福島県伊達市"_s},
      {"9600634", u"福島県伊達市保原町大泉"_s},
      {"9600001", u"福島県伊達市鹿島町"_s}}},
    {u"長野県長野市"_s,
     u"長野市"_s,
     {{"3800000", u"長野県長野市"_s},
      {"3800823", u"長野県長野市南千歳"_s},
      {"3800824", u"長野県長野市南千歳町"_s},
      {"3800825", u"長野県長野市末広町 （旧町名）"_s},
      {"3800826", u"長野県長野市能登町"_s},
      {"3800827", u"長野県長野市能登町"_s},
      {"3800928", u"長野県長野市若里"_s},
      {"3800828", u"長野県長野市若里　２階"_s}}},
    {u"上田市"_s, u""_s, {{"3860000", u"上田市 長野県"_s}, {"3860012", u"上田市中央 長野県"_s}}},
};

} // namespace

class TestPostalLookup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { useIndex(groups); }

    void findsTheCode_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("code");
        const auto row = [](const char *name, const char16_t *address, const char16_t *code) {
            QTest::newRow(name) << QString::fromUtf16(address) << QString::fromUtf16(code);
        };
        row("house number", u"長野県長野市南千歳１－２－３", u"380-0823");
        row("half-width house number", u"長野県長野市南千歳1-2-3", u"380-0823");
        row("the last match wins", u"長野県長野市南千歳町9", u"380-0824");
        row("two records of one area", u"長野県長野市能登町5", u"380-0827");
        row("without the old character", u"長野県長野市大字南千歳1", u"380-0823");
        row("the old character twice", u"長野県長野市大字大字南千歳1", u"380-0823");
        row("its short form", u"長野県長野市字南千歳1", u"380-0823");
        row("in another width", u"長野県長野市若里　２階", u"380-0828");
        row("a ward that the city does not have", u"長野県長野市中央区南千歳1", u"380-0000");
        row("blank ends the address", u"長野県長野市末広町1", u"380-0825");
        row("unknown town of the city", u"長野県長野市稲葉1", u"380-0000");
        row("something before it", u"本店 長野県長野市南千歳1", u"380-0823");
        row("not in the code page", u"長野県長野市南千歳1 \U0001F600", u"380-0823");
        row("the city alone", u"長野市", u"");
        row("another way of writing a city", u"上田市中央1-2", u"386-0012");
        row("a city's beginning alone", u"長野市南千歳町1", u"");
        row("blanks between", u"長野県　長野市 南千歳1", u"380-0823");
        row("a blank after the city", u"長野県長野市　南千歳1", u"380-0823");
        row("a blank that the area has", u"長野県長野市若里　２階", u"380-0828");
        row("a town alone", u"南千歳", u"");
        row("another prefecture", u"岐阜県長野町1", u"");
        row("empty", u"", u"");
        row("nothing but the old character", u"大字", u"");
    }

    void findsTheCode()
    {
        QFETCH(QString, address);
        QTEST(registers::postalCodeOf(m_data, address), "code");
    }

    void theWindowCutsTheOldCharacterOnce()
    {
        QCOMPARE(registers::postalSearchText(u"長野市大字大字南千歳1"_s), u"長野市大字南千歳1"_s);
    }

    // Two towns of a city that differ in nothing but what is left out: the address does not tell.
    void doubtfulTownsAreNotGuessed()
    {
        useIndex({{u"茨城県甲市"_s,
                   u"甲市"_s,
                   {{"3000000", u"茨城県甲市"_s},
                    {"3000001", u"茨城県甲市一ノ宮"_s},
                    {"3000002", u"茨城県甲市一宮"_s}}},
                  {u"茨城県乙市"_s,
                   u"乙市"_s,
                   {{"3100000", u"茨城県乙市"_s},
                    {"3100001", u"茨城県乙市一ノ宮"_s},
                    {"3100002", u"茨城県乙市一宮"_s},
                    {"3100003", u"茨城県乙市一宮"_s}}}});
        QCOMPARE(registers::postalCodeOf(m_data, u"茨城県甲市一宮5"_s), u"300-0002"_s);
        QCOMPARE(registers::postalCodeOf(m_data, u"茨城県甲市一ノ宮5"_s), u"300-0001"_s);
        QCOMPARE(registers::postalCodeOf(m_data, u"茨城県甲市一之宮5"_s), u"300-0000"_s);
        // A second code of the one does not settle which of the two it is.
        QCOMPARE(registers::postalCodeOf(m_data, u"茨城県乙市一之宮5"_s), u"310-0000"_s);
        useIndex(groups);
    }

    void listsTheMatches_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("found"); // codes of the lines
        QTest::newRow("first name") << u"長野県長野市南千歳町9"_s << u"380-0824"_s
                                    << u"380-0000 380-0823 380-0824"_s;
        QTest::newRow("second name") << u"長野市能登"_s << QString() << u"380-0826 380-0827"_s;
        QTest::newRow("second name, the first group only")
            << u"伊達市"_s << QString() << u"052-0000 052-0024"_s;
        QTest::newRow("shortened") << u"長野市南千歳町1番地"_s << QString() << u"380-0824"_s;
        QTest::newRow("shortened to the city")
            << u"長野市不明"_s << QString()
            << u"380-0000 380-0823 380-0824 380-0825 380-0826 380-0827 380-0928 380-0828"_s;
        QTest::newRow("fallback, part of an entry") << u"霞が関"_s << QString() << u"100-0013"_s;
        QTest::newRow("fallback, whole entries")
            << u"100-0001 千代田 と 100-0002 皇居外苑"_s << u"100-0002"_s << u"100-0001 100-0002"_s;
        QTest::newRow("nowhere") << u"桃源郷"_s << QString() << QString();
    }

    void listsTheMatches()
    {
        QFETCH(QString, text);
        PostalFiles::writeEntries(m_folder.path(), u"ZipCode1.txt"_s,
                                  {u"\"100-0001 千代田\""_s, u"100-0002 皇居外苑"_s, u"100-0013 霞が関"_s});
        const auto finds = registers::searchAreas(m_data, text, base::unwatched);
        QVERIFY(finds);
        QTEST(finds->code, "code");
        QStringList codes;
        for (const QString &line : finds->lines)
            codes << line.first(8);
        QTEST(codes.join(u' '), "found");
    }

    void aLineIsTheFieldAsStored()
    {
        const auto finds = registers::searchAreas(m_data, u"長野県長野市末広町"_s, base::unwatched);
        QVERIFY(finds && finds->lines.size() == 2);
        QCOMPARE(finds->lines.at(1), u"380-0825  長野県長野市末広町 （旧町名）"_s + QString(31, u' '));
    }

    void searchesOffices()
    {
        PostalFiles::writeEntries(m_folder.path(), u"ZIPCODE2.txt"_s,
                                  {u"100-8798 日本郵政,100-8111 宮内庁"_s, u"380-8570 長野県庁"_s});
        const auto finds = registers::searchOffices(m_data, u"庁"_s, base::unwatched);
        QVERIFY(finds);
        QCOMPARE(finds->lines, (QStringList{u"100-8111 宮内庁"_s, u"380-8570 長野県庁"_s}));
        QVERIFY(!registers::searchOffices({m_folder.filePath(u"nowhere"_s), {}}, u"庁"_s, base::unwatched));
    }

    void stopsBetweenRecords()
    {
        int asked = 0;
        const auto stopAtThree = [&asked](qint64, qint64) { return ++asked < 3; };
        const auto areas = registers::searchAreas(m_data, u"長野市"_s, stopAtThree);
        QVERIFY(areas && areas->stopped);
        QCOMPARE(areas->lines.size(), 2);
        asked = 0;
        PostalFiles::writeEntries(m_folder.path(), u"ZIPCODE2.txt"_s, QStringList(9, u"100-8798 甲"_s));
        const auto offices = registers::searchOffices(m_data, u"甲"_s, stopAtThree);
        QVERIFY(offices && offices->stopped);
        QCOMPARE(offices->lines.size(), 3);
    }

    // Each damage leaves the sound records of the file findable, and nothing outside of it is read.
    void passesOverDamage_data()
    {
        QTest::addColumn<QByteArray>("areas");
        QTest::addColumn<QString>("index");
        QTest::addColumn<QString>("code");
        const auto area = [](const char *code, const QString &town) {
            return PostalFiles::record({code, u"甲県乙市"_s + town});
        };
        const QByteArray sound = area("1000001", u"丙"_s);
        const QString plain = u"甲県乙市,乙市,1"_s;
        const QString found = u"100-0001"_s;
        QTest::newRow("sound") << sound << plain << found;
        QTest::newRow("letters for a code") << sound + area("12a4567", u"丙"_s) << plain << found;
        QTest::newRow("half a character")
            << sound + area("1000002", u"丙"_s).first(69) + '\x81' << plain << found;
        QTest::newRow("blank record") << sound + QByteArray(70, ' ') << plain << found;
        QTest::newRow("zero bytes") << sound + QByteArray(70, '\0') << plain << found;
        QTest::newRow("cut short") << sound + area("1000002", u"丙"_s).first(69) << plain << found;
        QTest::newRow("empty file") << QByteArray() << plain << QString();
        QTest::newRow("number zero") << sound << u"甲県乙市,乙市,0"_s << QString();
        QTest::newRow("beyond the end") << sound << u"甲県乙市,乙市,2"_s << QString();
        QTest::newRow("far beyond the end") << sound << u"甲県乙市,乙市,2147483647"_s << QString();
        QTest::newRow("next number beyond the end")
            << sound << u"甲県乙市,乙市,1\r\n丁,丁,2147483647"_s << found;
        QTest::newRow("next number smaller") << sound + sound << u"甲県乙市,乙市,2\r\n丁,丁,1"_s << QString();
        QTest::newRow("empty names") << sound << u"\"\",\"\",1\r\n甲県乙市,乙市,1"_s << found;
    }

    void passesOverDamage()
    {
        QFETCH(QByteArray, areas);
        QFETCH(QString, index);
        const QTemporaryDir folder;
        PostalFiles::write(folder.path(), u"ZIPCODE.txt"_s, areas);
        PostalFiles::write(folder.path(), u"ZIPID1.txt"_s, text::toCp932(index).value());
        const registers::PostalData data = dataIn(folder.path());
        QTEST(registers::postalCodeOf(data, u"甲県乙市丙1"_s), "code");
    }

    void missingFilesAreSilent()
    {
        const QTemporaryDir folder;
        const registers::PostalData data{folder.path(), m_data.index};
        QCOMPARE(registers::postalCodeOf(data, u"長野県長野市南千歳"_s), QString());
        QVERIFY(!registers::searchAreas(data, u"長野県長野市南千歳"_s, base::unwatched));
        QVERIFY(!registers::searchAreas({folder.path(), {}}, u"長野"_s, base::unwatched));
        QVERIFY(!registers::addressesOf(data, u"380-0823"_s));
    }

    void knowsACompleteCode_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("code");
        const QString code = u"380-0823"_s;
        QTest::newRow("digits") << u"3800823"_s << code;
        QTest::newRow("hyphen") << u"380-0823"_s << code;
        QTest::newRow("full width") << u"３８０－０８２３"_s << code;
        QTest::newRow("minus of another input method") << u"380−0823"_s << code;
        QTest::newRow("long vowel mark") << u"３８０ー０８２３"_s << code;
        QTest::newRow("its mark") << u"〒380‐0823"_s << code;
        QTest::newRow("blanks around") << u" 3800823　"_s << code;
        QTest::newRow("six digits") << u"380082"_s << QString();
        QTest::newRow("hyphen elsewhere") << u"3800-823"_s << QString();
        QTest::newRow("letters") << u"380-O823"_s << QString();
        QTest::newRow("empty") << QString() << QString();
    }

    void knowsACompleteCode()
    {
        QFETCH(QString, typed);
        QTEST(registers::completePostalCode(typed).value_or(QString()), "code");
    }

    void findsTheAreasOfACode()
    {
        const QTemporaryDir folder;
        PostalFiles::writeEntries(folder.path(), u"ZipCode1.txt"_s,
                                  {u"\"100-0001  甲乙\",100-0002 丙 100-0001"_s, u"100-0001  丁戊"_s,
                                   u"\"100-0001  丁戊\""_s, u"100-0003"_s});
        const registers::PostalData data{folder.path(), {}};
        const auto areas = registers::addressesOf(data, u"100-0001"_s);
        QVERIFY(areas);
        QCOMPARE(*areas, (QStringList{u"甲乙"_s, u"丁戊"_s}));
        for (const QString &code : {u"100-0003"_s, u"100-0004"_s, u"100-000"_s, QString()})
            QCOMPARE(registers::addressesOf(data, code)->size(), 0);
        QVERIFY(registers::shareAnArea(data, u"100-0001"_s, u"100-0001"_s));
        QVERIFY(!registers::shareAnArea(data, u"100-0001"_s, u"100-0002"_s));
    }

private:
    static registers::PostalData dataIn(const QString &folder)
    {
        auto index = registers::loadPostalIndex(QDir(folder).filePath(u"ZIPID1.txt"_s));
        if (!index)
            qFatal("%s", qPrintable(index.error().text));
        return {folder, std::make_shared<const registers::PostalIndex>(std::move(*index))};
    }

    void useIndex(const QList<PostalFiles::Group> &all)
    {
        PostalFiles::writeAreas(m_folder.path(), all);
        m_data = dataIn(m_folder.path());
    }

    QTemporaryDir m_folder;
    registers::PostalData m_data;
};

QTEST_GUILESS_MAIN(TestPostalLookup)
#include "tst_postal_lookup.moc"

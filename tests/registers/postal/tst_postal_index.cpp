#include "registers/postal/postal_index.h"
#include "text/cp932.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestPostalIndex : public QObject
{
    Q_OBJECT

private slots:
    void readsRecords_data();
    void readsRecords();
    void refusesDamagedFiles_data();
    void refusesDamagedFiles();
    void missingFileIsEmpty();
#ifdef Q_OS_UNIX
    void deviceIsRefused();
#endif
    void holdsFiftyThousandAndOne();

private:
    base::Result<registers::PostalIndex> load(const QByteArray &content);

    QTemporaryDir m_folder;
};

base::Result<registers::PostalIndex> TestPostalIndex::load(const QByteArray &content)
{
    QFile file(m_folder.filePath(u"ZIPID1.txt"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("no test file");
    file.close();
    return registers::loadPostalIndex(file.fileName());
}

void TestPostalIndex::readsRecords_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << u"北海道札幌市,札幌市,1\r\n青森県青森市,青森市,230\r\n"_s
                           << u"北海道札幌市|札幌市|1 青森県青森市|青森市|230"_s;
    QTest::newRow("quoted") << u"\"北海道,札幌市\",\"札幌市\",\"1\"\r\n"_s << u"北海道,札幌市|札幌市|1"_s;
    QTest::newRow("no last line end") << u"ソ表,能,7"_s << u"ソ表|能|7"_s;
    QTest::newRow("unix line ends, blanks") << u"  甲 , 乙 , 3 \n丙,丁,4\n"_s << u"甲|乙|3 丙|丁|4"_s;
    QTest::newRow("empty names") << u"甲,,3\r\n\"\",丁,4\r\n"_s << u"甲||3 |丁|4"_s;
    QTest::newRow("ends at control-Z") << u"甲,乙,3\r\n\x1a丙,丁,4"_s << u"甲|乙|3"_s;
    QTest::newRow("empty file") << QString() << QString();
}

void TestPostalIndex::readsRecords()
{
    QFETCH(QString, content);
    const auto index = load(text::toCp932(content).value());
    QVERIFY2(index, qPrintable(index ? QString() : index.error().text));
    QStringList groups;
    for (const registers::PostalGroup &group : index->groups())
        groups << u"%1|%2|%3"_s.arg(group.name, group.shortName).arg(group.firstRecord);
    QTEST(groups.join(u' '), "expected");
}

void TestPostalIndex::refusesDamagedFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("not the code page") << QByteArray("\x81,a,1\r\n");
    QTest::newRow("no number") << QByteArray("a,b,c\r\n");
    QTest::newRow("half a record") << QByteArray("a,b,1\r\nc");
    QTest::newRow("negative") << QByteArray("a,b,-1\r\n");
    QTest::newRow("number beyond any file") << QByteArray("a,b,99999999999\r\n");
    QTest::newRow("open quote") << QByteArray("\"a,b,1\r\n");
    QTest::newRow("binary") << QByteArray(4096, '\0');
}

void TestPostalIndex::refusesDamagedFiles()
{
    QFETCH(QByteArray, content);
    const auto index = load(content);
    QVERIFY(!index);
    QVERIFY(index.error().text.contains(u"ZIPID1.txt"_s));
}

void TestPostalIndex::missingFileIsEmpty()
{
    const auto index = registers::loadPostalIndex(m_folder.filePath(u"nowhere.txt"_s));
    QVERIFY(index);
    QVERIFY(index->groups().empty());
}

#ifdef Q_OS_UNIX
// Read as a file it would fill the memory.
void TestPostalIndex::deviceIsRefused()
{
    const QString link = m_folder.filePath(u"endless.txt"_s);
    QVERIFY(QFile::link(u"/dev/zero"_s, link));
    QVERIFY(!registers::loadPostalIndex(link));
}
#endif

void TestPostalIndex::holdsFiftyThousandAndOne()
{
    const QByteArray line("a,b,1\r\n");
    const auto full = load(line.repeated(50001));
    QVERIFY(full);
    QCOMPARE(full->groups().size(), std::size_t(50001));
    QVERIFY(!load(line.repeated(50002)));
}

QTEST_GUILESS_MAIN(TestPostalIndex)
#include "tst_postal_index.moc"

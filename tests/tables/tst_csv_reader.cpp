#include "tables/csv_reader.h"
#include "tables/text_file.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

class TestCsvReader : public QObject
{
    Q_OBJECT

private slots:
    void records_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("records"); // fields between |, records between /
        QTest::newRow("empty") << u""_s << u""_s;
        QTest::newRow("line ends") << u"a,b\r\nc,d\ne\rf"_s << u"a|b/c|d/e/f"_s;
        QTest::newRow("empty fields") << u",a,,\n,"_s << u"|a||/|"_s;
        QTest::newRow("empty lines") << u"\n\na\n\r\n\nb\n"_s << u"a/b"_s;
        QTest::newRow("quotes") << u"\"a,b\",\"c\"\"d\"\n\"e\nf\""_s << u"a,b|c\"d/e\nf"_s;
        QTest::newRow("empty quotes") << u"\"\",\"\"\n"_s << u"|"_s;
        QTest::newRow("quote within") << u"a\"b,c\n"_s << u"a\"b|c"_s;
        QTest::newRow("text after quote") << u"\"a\"b,c\n"_s << u"ab|c"_s;
        QTest::newRow("blanks kept") << u" a , b\n"_s << u" a | b"_s;
        QTest::newRow("unclosed") << u"a,\"b\nc,d"_s << u"a|b\nc,d"_s;
    }
    void records()
    {
        QFETCH(QString, text);
        QFETCH(QString, records);
        tables::CsvReader reader(text);
        QStringList record;
        QStringList found;
        while (reader.next(record))
            found += record.join(u'|');
        QCOMPARE(found.join(u'/'), records);
        QCOMPARE(reader.endsInQuotes(), QByteArray(QTest::currentDataTag()) == "unclosed");
    }

    void linesAreCounted()
    {
        const QString text = u"a\n\n\"b\r\nc\"\r\nd"_s;
        tables::CsvReader reader(text);
        QStringList record;
        QList<int> lines;
        while (reader.next(record))
            lines += reader.line();
        QCOMPARE(lines, (QList<int>{1, 3, 5}));
    }

    void clipboardTable()
    {
        const QString text = u"名前\tTEL\n\"山田\n商店\"\t03,1\n"_s;
        tables::CsvReader reader(text, u'\t');
        QStringList record;
        QVERIFY(reader.next(record) && reader.next(record));
        QCOMPARE(record, (QStringList{u"山田\n商店"_s, u"03,1"_s}));
    }

    void encodings_data()
    {
        QTest::addColumn<QByteArray>("content");
        const QString text = u"①髙ｱ〜"_s;
        QTest::newRow("UTF-8") << text.toUtf8();
        QTest::newRow("UTF-8 with mark") << "\xef\xbb\xbf" + text.toUtf8();
        QTest::newRow("code page") << QByteArray("\x87\x40\xfb\xfc\xb1\x81\x60");
        QTest::newRow("UTF-16") << QByteArray("\xff\xfe\x60\x24\xd9\x9a\x71\xff\x1c\x30", 10);
    }
    void encodings()
    {
        QFETCH(QByteArray, content);
        const auto decoded = tables::decodeText(content);
        QVERIFY(decoded);
        // The code page's wave comes back as its full-width twin.
        QCOMPARE(QString(*decoded).replace(u'～', u'〜'), u"①髙ｱ〜"_s);
    }

    void whatIsNoText()
    {
        QVERIFY(!tables::decodeText(QByteArray("\x81\xff\xff\x80 ")));
        QTemporaryDir folder;
        QVERIFY(!tables::readTextFile(folder.path(), 100));
        QVERIFY(!tables::readTextFile(folder.filePath(u"none"_s), 100));
        QFile file(folder.filePath(u"large"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(101, 'a'));
        file.close();
        QVERIFY(!tables::readTextFile(file.fileName(), 100));
        QVERIFY(tables::readTextFile(file.fileName(), 101));
    }
};

QTEST_GUILESS_MAIN(TestCsvReader)
#include "tst_csv_reader.moc"

#include "tables/csv_guard.h"
#include "tables/csv_reader.h"
#include "tables/table_writer.h"
#include "tables/text_file.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace
{

// A value in a column of a type, and what a reader is to see: "t:text", "n:number", "d:date", "-" for none.
struct Sample
{
    base::Format type;
    QVariant value;
    QString seen;
};

QString repeated(const QString &text, int length) { return text.repeated(length).first(length); }

QString asText(const QString &text) { return u"t:"_s + text; }

std::vector<Sample> samples()
{
    using enum base::Format;
    std::vector<Sample> all = {
        {Text, {}, u"-"_s},
        {Text, u""_s, u"-"_s},
        {Text, u"0312345678"_s, {}},
        {Text, u"12"_s, {}},
        {Text, u" 前後 "_s, {}},
        {Text, u"𠮷野家㈱髙﨑①～−"_s, {}},
        {Text, u"a,\"b\"\r\nc\td"_s, {}},
        {Text, u"<&>_x0041_ _x005f_"_s, {}},
        {Text, u"\x01\x1f\x7f\u0085"_s, {}},
        {Text, QString(QChar(0xD842)) + u"野"_s, u"t:\ufffd野"_s},
        {Text, QString(QChar(0)) + QChar(0xDFB7) + QChar(0xFFFE), u"t:\ufffd\ufffd\ufffd"_s},
        {Number, 15, u"n:15"_s},
        {Number, -3.25, u"n:-3.25"_s},
        {Number, 0.1, u"n:0.1"_s},
        {Number, 100000.0, u"n:100000"_s},
        {Number, {}, u"-"_s},
        {Number, u"十"_s, {}},
        {Number, Q_INT64_C(9007199254740993), u"t:9007199254740993"_s},
        {Date, u"2026-04-01"_s, u"d:2026/04/01"_s},
        {Date, u"1900-03-01"_s, u"d:1900/03/01"_s},
        {Date, u"1900-02-28"_s, {}},
        {Date, u"2026-02-30"_s, {}},
        {Date, u"2026-04-01T10:00:00"_s, {}},
        {Text, repeated(u"ab"_s, 32767), {}},
        {Text, repeated(u"漢字"_s, 32767), {}},
        {Text, repeated(u"latin ÿ"_s, 9000) + repeated(u"和"_s, 9000), {}},
    };
    for (const QChar c : u"=+-@\t\r\n'＝＠"_s) {
        for (const QString &before : {u""_s, u"'"_s, u"''"_s})
            all.push_back({Text, before + c + u"1+2"_s, {}});
    }
    // Texts of every length about the places where the records of a workbook end.
    for (int i = 0; i < 6000; ++i)
        all.push_back({Text, QString::number(i) + repeated(i % 3 == 0 ? u"ｶﾅ漢"_s : u"abc"_s, i % 41), {}});
    for (Sample &sample : all) {
        if (sample.seen.isEmpty())
            sample.seen = asText(sample.value.toString());
    }
    return all;
}

// One sample a row, in the first, second or third column by its type.
tables::Table tableOf(const std::vector<Sample> &samples)
{
    auto at = std::make_shared<std::size_t>(0);
    return {{{u"文字"_s}, {u"数"_s, base::Format::Number}, {u"日付"_s, base::Format::Date}},
            qint64(samples.size()),
            [at, samples](QVariantList &row) -> base::Result<bool> {
                if (*at == samples.size())
                    return false;
                row = QVariantList(3);
                row[int(samples[*at].type)] = samples[*at].value;
                ++*at;
                return true;
            }};
}

tables::Table emptyTable(qint64 rows, const base::Result<bool> &answer = false)
{
    return {{{u"文字"_s}}, rows, [answer](QVariantList &) { return answer; }};
}

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonArray readSheet(const QString &fileName)
{
    QProcess reader;
    // Debian's own, which has its packages; another one may stand before it in the path.
    reader.start(u"/usr/bin/python3"_s, {QFINDTESTDATA("read_sheet.py"), fileName});
    reader.waitForFinished();
    const QByteArray error = reader.readAllStandardError();
    if (!error.isEmpty())
        qWarning("%s", error.constData());
    return QJsonDocument::fromJson(reader.readAllStandardOutput()).array();
}

void eachFormat()
{
    QTest::addColumn<QString>("suffix");
    for (const char *suffix : {"xls", "xlsx", "csv"})
        QTest::addRow("%s", suffix) << QString::fromLatin1(suffix);
}

// No file may grow beyond \a bytes while this is there.
struct FullDisk
{
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit{bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before); }
    rlimit before{};
};

} // namespace

class TestTableWriter : public QObject
{
    Q_OBJECT

private slots:
    void keepsValuesAndTypes_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::newRow("xls") << u"xls"_s;
        QTest::newRow("xlsx") << u"xlsx"_s;
    }

    void keepsValuesAndTypes()
    {
        QFETCH(QString, suffix);
        const auto expected = samples();
        const QString file = m_folder.filePath(u"values."_s + suffix);
        const auto written = tables::writeTable(file, tableOf(expected), base::unwatched);
        QVERIFY2(written, qPrintable(written ? QString() : written.error().text));
        const QJsonArray rows = readSheet(file);
        QCOMPARE(rows.size(), qsizetype(expected.size() + 1));
        QCOMPARE(rows[0].toArray(), QJsonArray({u"t:文字"_s, u"t:数"_s, u"t:日付"_s}));
        for (std::size_t i = 0; i < expected.size(); ++i) {
            QJsonArray row{u"-"_s, u"-"_s, u"-"_s};
            row[int(expected[i].type)] = expected[i].seen;
            QCOMPARE(rows[qsizetype(i + 1)].toArray(), row);
        }
    }

    void csvComesBackUnchanged()
    {
        const auto expected = samples();
        const QString file = m_folder.filePath(u"values.csv"_s);
        QVERIFY(tables::writeTable(file, tableOf(expected), base::unwatched));
        QVERIFY(contentOf(file).startsWith("\xef\xbb\xbf文字,数,日付\r\n"));
        const auto text = tables::readTextFile(file, qint64(1) << 24);
        QVERIFY(text);
        tables::CsvReader reader(*text);
        QStringList record;
        QVERIFY(reader.next(record));
        for (const Sample &sample : expected) {
            QVERIFY(reader.next(record));
            QCOMPARE(record.size(), 3);
            const QString field = record[int(sample.type)];
            QVERIFY2(!u"=+@\t\r\n＝"_s.contains(field.isEmpty() ? u'x' : field.front()), qPrintable(field));
            QCOMPARE(tables::unguarded(field), sample.seen == u"-" ? QString() : sample.seen.mid(2));
        }
        QVERIFY(!reader.next(record));
    }

    void leavesForeignApostrophes()
    {
        for (const QString &field : {u"'"_s, u"'90年代"_s, u"''"_s, u"Rock'n"_s, u"-5"_s})
            QCOMPARE(tables::unguarded(field), field);
    }

    void refusesBeforeWriting_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qint64>("rows");
        QTest::addColumn<QString>("advice");
        QTest::newRow("full .xls") << u"a.xls"_s << qint64(65535) << QString();
        QTest::newRow("over .xls") << u"a.xls"_s << qint64(65536) << u"xlsx 形式を選んで"_s;
        QTest::newRow("over both") << u"a.xls"_s << qint64(1048576) << u"csv 形式を選んで"_s;
        QTest::newRow("over .xlsx") << u"a.xlsx"_s << qint64(1048576) << u"csv 形式を選んで"_s;
        QTest::newRow("large .csv") << u"a.csv"_s << qint64(1048576) << QString();
        QTest::newRow("other extension") << u"shop.cdb"_s << qint64(1) << u".xls、.xlsx または .csv"_s;
        QTest::newRow("no extension") << u"a"_s << qint64(1) << u".xls、.xlsx または .csv"_s;
        QTest::newRow("folder") << u"folder.xls"_s << qint64(1) << u"別の名前"_s;
    }

    void refusesBeforeWriting()
    {
        QFETCH(QString, name);
        QFETCH(qint64, rows);
        QFETCH(QString, advice);
        QDir(m_folder.path()).mkdir(u"folder.xls"_s);
        const QString file = m_folder.filePath(name);
        const auto possible = tables::checkTarget(file, rows);
        QCOMPARE(bool(possible), advice.isEmpty());
        if (!possible) {
            QVERIFY2(possible.error().text.contains(advice), qPrintable(possible.error().text));
            QVERIFY(!tables::writeTable(file, emptyTable(rows), base::unwatched));
            QVERIFY(!QFileInfo(file).isFile());
        }
    }

    void anUnfinishedFileReplacesNothing_data() { eachFormat(); }

    void anUnfinishedFileReplacesNothing()
    {
        QFETCH(QString, suffix);
        QTemporaryDir folder;
        const QString file = folder.filePath(u"old."_s + suffix);
        QFile old(file);
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
        old.close();
        const auto failed = [&](const tables::Table &table, const base::Progress &progress) {
            const auto written = tables::writeTable(file, table, progress);
            const bool untouched =
                contentOf(file) == "old" && QDir(folder.path()).entryList(QDir::Files).size() == 1;
            return written || !untouched ? u"written"_s : written.error().text;
        };
        const auto stop = [](qint64 done, qint64) { return done < 200; };
        QCOMPARE(failed(tableOf(samples()), stop), base::cancelled().text);
        QCOMPARE(failed(emptyTable(1, base::Error{u"unreadable"_s}), base::unwatched), u"unreadable"_s);
        for (const rlim_t size : {0, 600, 30000}) {
            const FullDisk disk(size);
            const QString told = failed(tableOf(samples()), base::unwatched);
            QVERIFY2(told.startsWith(u"ファイルに書き込めませんでした。"), qPrintable(told));
        }
        const Sample tooLong{base::Format::Text, repeated(u"x"_s, 32768), {}};
        if (suffix != u"csv")
            QVERIFY(failed(tableOf({tooLong}), base::unwatched).startsWith(u"1 件目の「文字」が長すぎる"));
        QVERIFY(!tables::writeTable(folder.filePath(u"none/a."_s + suffix), emptyTable(0), base::unwatched));
        QVERIFY(tables::writeTable(file, emptyTable(0), base::unwatched));
        QVERIFY(contentOf(file) != "old");
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(TestTableWriter)
#include "tst_table_writer.moc"

#include "db/connection.h"
#include "db/old_files/conversion.h"
#include "db/old_files/jet_file.h"
#include "db/old_files/old_values.h"
#include "db/schema.h"
#include "tables/csv_reader.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;
using db::old_reader::Cell;

namespace
{

const QString legacyFile = QStringLiteral(LEGACY_FILE);

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(fileName));
}

QString outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("%s failed", qPrintable(program));
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// A folder with an old file and a conversion of it.
class Bench
{
public:
    explicit Bench(const QByteArray &content = contentOf(legacyFile))
    {
        options.reader = QStringLiteral(OLD_FILE_READER);
        write(source, content);
    }

    base::Result<db::ConversionSummary> convert(const base::Progress &progress = base::unwatched)
    {
        return db::convertOldFile(source, target, progress, options);
    }

    /// The rows of a query in the new file as "a|b|c" lines, NULL as "-".
    QStringList rows(const QString &sql)
    {
        db::Connection connection;
        if (!connection.open(target))
            return {u"cannot be opened"_s};
        const auto result = connection.select(sql);
        QStringList lines;
        for (const QVariantList &row : result ? result->rows : std::vector<QVariantList>()) {
            QStringList cells;
            for (const QVariant &value : row)
                cells << (value.isNull() ? u"-"_s : value.toString());
            lines << cells.join(u'|');
        }
        return lines;
    }

    /// What stands in the folder.
    QStringList files() const { return QDir(folder.path()).entryList(QDir::Files, QDir::Name); }

    QTemporaryDir folder;
    QString source = folder.filePath(u"old.cdb"_s);
    QString target = folder.filePath(u"new.cdb"_s);
    db::ConversionOptions options;
};

// The own company's first bank line made a long text, \a head in the row and what else \a head needs.
JetFile withLongText(JetFile file, const QByteArray &head)
{
    constexpr int column = 9;
    const qsizetype definition = file.definitionWith(u"取引銀行1"_s);
    const qsizetype entry = definition * JetFile::pageSize + 63 +
                            12 * file.get32(definition * JetFile::pageSize + 51) + 25 * column;
    file.bytes[entry] = 0x0c;
    const int number = file.get16(entry + 7);
    const JetFile::Slot slot = file.rows(definition).front();
    const QByteArray row = file.row(slot);
    const qsizetype maskAt = row.size() - (12 + 7) / 8;
    const int count = qFromLittleEndian<quint16>(row.constData() + maskAt - 2);
    const auto endsAt = [&](int i) { return maskAt - 4 - 2 * i; };
    const auto offset = [&](int i) { return qFromLittleEndian<quint16>(row.constData() + endsAt(i)); };
    QByteArray tail = row.mid(offset(count));
    for (int i = number + 1; i <= count; ++i)
        qToLittleEndian(quint16(offset(i) + head.size() - (offset(number + 1) - offset(number))),
                        tail.data() + endsAt(i) - offset(count));
    const QByteArray changed = row.first(offset(number)) + head +
                               row.mid(offset(number + 1), offset(count) - offset(number + 1)) + tail;
    const qsizetype start = JetFile::pageSize - changed.size();
    file.bytes.replace(slot.first * JetFile::pageSize + start, changed.size(), changed);
    file.setSlot(slot, static_cast<int>(start));
    return file;
}

QByteArray longTextHead(quint32 lengthAndFlags, quint32 place)
{
    QByteArray head(12, '\0');
    qToLittleEndian(lengthAndFlags, head.data());
    qToLittleEndian(place, head.data() + 4);
    return head;
}

QByteArray piece(quint32 next, const QByteArray &content)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(next, bytes.data());
    return bytes + content;
}

} // namespace

class TestConversion : public QObject
{
    Q_OBJECT

private slots:
    void asOtherReadersSeeIt_data();
    void asOtherReadersSeeIt();
    void leavesTheOldFileAlone();
    void refused_data();
    void refused();
    void stopped();
    void readerFails_data();
    void readerFails();
    void movedRows();
    void longTexts_data();
    void longTexts();
    void duplicateKeys();
    void unknownAndMissing();
    void linkedTable();
    void values_data();
    void values();
};

void TestConversion::asOtherReadersSeeIt_data()
{
    QTest::addColumn<QString>("table");
    for (const db::Table &table : db::tables()) {
        if (table.firstColumns > 0)
            QTest::newRow(qPrintable(table.name)) << table.name;
    }
}

void TestConversion::asOtherReadersSeeIt()
{
    QFETCH(QString, table);
    static Bench bench;
    static const auto summary = bench.convert();
    QVERIFY(bool(summary) && summary->isComplete());
    QVERIFY2(summary->notes.isEmpty(), qPrintable(summary->notes.join(u'\n')));

    const QString null = u"<null>"_s;
    const QString csv = outputOf(QStringLiteral(MDB_EXPORT), {u"-0"_s, null, u"-D"_s, u"%Y-%m-%d"_s, u"-T"_s,
                                                              u"%Y-%m-%d"_s, legacyFile, table});
    tables::CsvReader reader(csv);
    QStringList columns;
    QVERIFY(reader.next(columns));
    db::Connection connection;
    QVERIFY(connection.open(bench.target));
    const auto ours =
        connection.select(u"SELECT "_s + columns.join(u", ") + u" FROM "_s + table + u" ORDER BY rowid"_s);
    QVERIFY(bool(ours));
    QStringList theirs;
    int row = 0;
    for (; reader.next(theirs); ++row) {
        QVERIFY(row < ours->count());
        for (qsizetype i = 0; i < columns.size(); ++i) {
            const QVariant &value = ours->rows[std::size_t(row)].at(i);
            const QString where = u"%1 row %2 %3: %4 is not %5"_s.arg(table).arg(row).arg(
                columns.at(i), value.toString(), theirs.at(i));
            // The other reader writes an empty text as NULL.
            bool equal = value.toString().isEmpty() ? theirs.at(i) == null : value.toString() == theirs.at(i);
            if (value.typeId() == QMetaType::Double)
                equal = value.toDouble() == theirs.at(i).toDouble();
            QVERIFY2(equal, qPrintable(where));
        }
    }
    QCOMPARE(row, ours->count());
    QCOMPARE(row, outputOf(QStringLiteral(MDB_COUNT), {legacyFile, table}).toInt());
    const auto counted = std::find_if(summary->tables.begin(), summary->tables.end(),
                                      [&](const auto &counts) { return counts.name == table; });
    QVERIFY(counted != summary->tables.end());
    QCOMPARE(counted->read, qint64(row));
    QCOMPARE(counted->written, qint64(row));
}

void TestConversion::leavesTheOldFileAlone()
{
    Bench bench;
    QFile source(bench.source);
    const QDateTime longAgo(QDate(2004, 6, 7), QTime(8, 9));
    QVERIFY(source.open(QIODevice::ReadWrite) &&
            source.setFileTime(longAgo, QFileDevice::FileModificationTime));
    source.close();
    QVERIFY(source.setPermissions(QFile::ReadOwner));
    QVERIFY(bool(bench.convert()));
    QCOMPARE(contentOf(bench.source), contentOf(legacyFile));
    QCOMPARE(QFileInfo(bench.source).lastModified(), longAgo);
    QCOMPARE(bench.files(), QStringList({u"new.cdb"_s, u"old.cdb"_s}));
}

void TestConversion::refused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("sentence");
    const QByteArray original = contentOf(legacyFile);
    const auto changed = [&original](qsizetype at, const QByteArray &bytes) {
        return QByteArray(original).replace(at, bytes.size(), bytes);
    };
    QTest::newRow("empty") << QByteArray() << u"以前の形式のデータベースファイルではない"_s;
    QTest::newRow("header only") << original.first(200) << u"途中で切れている"_s;
    QTest::newRow("text") << QByteArray(5000, 'a') << u"以前の形式のデータベースファイルではない"_s;
    QTest::newRow("newer engine") << changed(0x14, "\2") << u"より新しい形式"_s;
    QTest::newRow("newer name") << changed(4, "Standard ACE DB") << u"より新しい形式"_s;
    QTest::newRow("password") << changed(0x42, QByteArray(1, char(original.at(0x42) ^ 'p')))
                              << u"パスワードが設定されている"_s;
    QTest::newRow("version 3 by mistake") << changed(0x14, QByteArray(1, '\0')) << u"変換できませんでした"_s;
    QTest::newRow("half") << original.first(original.size() / 2 + 1000) << u"途中で切れている"_s;
    QTest::newRow("half, whole pages") << original.first(75 * JetFile::pageSize) << u"壊れている"_s;
}

void TestConversion::refused()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, sentence);
    Bench bench(content);
    const auto converted = bench.convert();
    QVERIFY(!converted);
    QVERIFY2(converted.error().text.contains(sentence), qPrintable(converted.error().text));
    QCOMPARE(bench.files(), QStringList{u"old.cdb"_s});
}

void TestConversion::stopped()
{
    Bench bench;
    int calls = 0;
    const auto converted = bench.convert([&calls](qint64 done, qint64 total) {
        ++calls;
        return done * 2 < total || total == 0;
    });
    QVERIFY(!converted && converted.error().cancelled);
    QVERIFY(calls > 1000);
    QCOMPARE(bench.files(), QStringList{u"old.cdb"_s});

    write(bench.target, "mine");
    QVERIFY(!bench.convert());
    QCOMPARE(contentOf(bench.target), QByteArray("mine"));
}

void TestConversion::readerFails_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("dies") << QByteArray("kill -SEGV $$");
    QTest::newRow("ends at once") << QByteArray("exit 0");
    QTest::newRow("silent") << QByteArray("exec sleep 60");
    QTest::newRow("endless nonsense") << QByteArray("exec yes");
    QTest::newRow("endless frame") << QByteArray("printf 'T\\377\\377\\377\\003'; exec cat /dev/zero");
    QTest::newRow("too many columns")
        << QByteArray("printf 'T\\6\\0\\0\\0\\1\\0\\0\\0\\377\\377'; exec sleep 60");
    const QByteArray table = "printf 'T\\20\\0\\0\\0\\0\\0\\0\\0\\0\\0\\6\\0\\0\\0'; printf '単位'; ";
    QTest::newRow("rows of no table") << table + "printf 'B\\4\\0\\0\\0\\7\\0\\0\\0'; exec sleep 60";
    QTest::newRow("a row before its table") << table + "printf 'R\\0\\0\\0\\0'; exec sleep 60";
    QTest::newRow("dies in the middle") << QByteArray("exec head -c 200000 <&3 3< reader-output");
}

void TestConversion::readerFails()
{
    QFETCH(QByteArray, script);
    Bench bench;
    const QString output = bench.folder.filePath(u"output"_s);
    QProcess real;
    real.setStandardOutputFile(output);
    real.start(bench.options.reader, {bench.source});
    QVERIFY(real.waitForFinished());
    bench.options.reader = bench.folder.filePath(u"reader"_s);
    bench.options.silence = 500;
    if (script.contains("reader-output"))
        script = "exec head -c 200000 '" + QFile::encodeName(output) + "'";
    write(bench.options.reader, "#!/bin/sh\n" + script + "\n");
    QFile::setPermissions(bench.options.reader, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const auto converted = bench.convert();
    QVERIFY(!converted);
    QVERIFY2(converted.error().text.contains(u"壊れている"_s), qPrintable(converted.error().text));
    QVERIFY(!QFile::exists(bench.target));
    QCOMPARE(QFileInfo(bench.target).dir().entryList({u"*.tmp"_s}), QStringList());
}

// Rows that outgrew their page lie elsewhere; a slip's lines keep their order all the same.
void TestConversion::movedRows()
{
    const QString lines = u"SELECT ID, 商品名, 規格, 数量, 単位, 単価, 金額 FROM 入出庫サブ ORDER BY rowid"_s;
    Bench plain;
    QVERIFY(bool(plain.convert()));

    JetFile file(contentOf(legacyFile));
    const auto rows = file.rows(file.definitionWith(u"単価"_s));
    const JetFile::Slot from = rows[1];
    const QByteArray row = file.row(from);
    const JetFile::Slot to = file.addRow(rows.back().first, row, 0x8000);
    file.addRow(rows.back().first, row, 0x8000); // nothing points to this one: it was deleted
    file.put32(file.start(from), JetFile::place(to));
    file.setSlot(from, file.slot(from) | 0x4000);
    Bench moved(file.bytes);
    const auto converted = moved.convert();
    QVERIFY2(bool(converted), qPrintable(converted ? QString() : converted.error().text));
    QCOMPARE(moved.rows(lines), plain.rows(lines));
}

void TestConversion::longTexts_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text"); // empty: unreadable
    const JetFile original(contentOf(legacyFile));
    const QString two = u"一行目①\r\n髙橋﨑　ｱｲｳ"_s;
    const QByteArray bytes = JetFile::utf16(two);
    const auto size = quint32(bytes.size());

    QTest::newRow("in the row") << withLongText(original, longTextHead(size | 0x80000000, 0) + bytes).bytes
                                << two;
    const QByteArray compressed =
        QByteArray("\xff\xfeTEL 1\0", 8) + JetFile::utf16(u"髙"_s) + QByteArray("\0!", 2);
    QTest::newRow("compressed")
        << withLongText(original, longTextHead(quint32(compressed.size()) | 0x80000000, 0) + compressed).bytes
        << u"TEL 1髙!"_s;

    JetFile single = original;
    const auto only = JetFile::place(single.addRow(single.addPage(), bytes));
    QTest::newRow("one piece") << withLongText(single, longTextHead(size | 0x40000000, only)).bytes << two;

    JetFile chain = original;
    const auto second = JetFile::place(chain.addRow(chain.addPage(), piece(0, bytes.mid(10))));
    const auto first = JetFile::place(chain.addRow(chain.addPage(), piece(second, bytes.first(10))));
    QTest::newRow("two pieces") << withLongText(chain, longTextHead(size, first)).bytes << two;

    JetFile circle = original;
    const auto self = quint32(circle.bytes.size() / JetFile::pageSize) << 8;
    circle.addRow(circle.addPage(), piece(self, bytes));
    QTest::newRow("circle") << withLongText(circle, longTextHead(100'000, self)).bytes << QString();
    QTest::newRow("nowhere") << withLongText(original, longTextHead(size, 0x7fffff00)).bytes << QString();
    QTest::newRow("too short") << withLongText(original, longTextHead(500 | 0x80000000, 0) + bytes).bytes
                               << QString();
}

void TestConversion::longTexts()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, text);
    Bench bench(content);
    const auto converted = bench.convert();
    QVERIFY2(bool(converted), qPrintable(converted ? QString() : converted.error().text));
    QCOMPARE(bench.rows(u"SELECT 会社名1, 取引銀行1 FROM 自社情報"_s),
             QStringList{u"有限会社　果樹園|"_s + (text.isEmpty() ? u"-"_s : text)});
    QCOMPARE(converted->losses,
             text.isEmpty() ? QStringList{u"自社情報 会社ID=1 取引銀行1: 読み取れません"_s} : QStringList());
}

void TestConversion::duplicateKeys()
{
    JetFile file(contentOf(legacyFile));
    const auto setKey = [&file](const JetFile::Slot &row, quint32 key) {
        file.put32(file.start(row) + 2, key);
    };
    const auto slips = file.rows(file.definitionWith(u"伝票番号"_s));
    setKey(slips[1], 1); // both 1 and 2 have lines; those of 2 lose their slip
    const auto units = file.rows(file.definitionWith(u"単位ID"_s));
    setKey(units[2], 1);
    Bench bench(file.bytes);
    const auto converted = bench.convert();
    QVERIFY2(bool(converted), qPrintable(converted ? QString() : converted.error().text));
    QVERIFY(!converted->isComplete());
    QCOMPARE(converted->losses.size(), 1);
    QVERIFY2(
        converted->losses.front().startsWith(
            u"入出庫マスター 重複していた ID=1 の行を ID=901 に変更しました。どちらの行のものか区別できない明細 "_s),
        qPrintable(converted->losses.front()));
    QCOMPARE(converted->notes, QStringList{u"単位 重複していた 単位ID=1 の行を 単位ID=7 に変更しました"_s});
    QCOMPARE(bench.rows(u"SELECT ID, 伝票番号 FROM 入出庫マスター WHERE ID IN (1, 2, 901)"_s),
             QStringList({u"1|O24-1"_s, u"901|P24-2"_s}));
    QCOMPARE(bench.rows(u"SELECT count(*) FROM 入出庫マスター"_s), QStringList{u"900"_s});
    QCOMPARE(bench.rows(u"SELECT count(*) FROM 単位"_s), QStringList{u"6"_s});
    QCOMPARE(bench.rows(u"SELECT count(*) FROM 入出庫サブ"_s), QStringList{u"2062"_s});
}

void TestConversion::unknownAndMissing()
{
    JetFile file(contentOf(legacyFile));
    file.rename(2, u"納品先名キー"_s, u"納品先名ギー"_s);
    file.rename(2, u"メモ"_s, u"ﾒﾓ"_s); // differs in width alone
    file.rename(1, u"発送マスター"_s, u"発送マスタ２"_s);
    Bench bench(file.bytes);
    bench.options.missing = [](const QString &table, const QString &column, const auto &valueOf) {
        return table + column == u"納品先納品先名キー"_s ? valueOf(u"納品先名1"_s) : QVariant();
    };
    const auto converted = bench.convert();
    QVERIFY2(bool(converted), qPrintable(converted ? QString() : converted.error().text));
    QCOMPARE(converted->losses,
             QStringList({u"納品先 このプログラムにない項目「納品先名ギー」（データ 299 件）"_s,
                          u"このプログラムにないテーブル「発送マスタ２」（225 行）"_s}));
    QCOMPARE(converted->notes, QStringList({u"以前のファイルにないテーブル「発送マスター」"_s,
                                            u"納品先 以前のファイルにない項目「納品先名キー」"_s}));
    QVERIFY(converted->text().contains(u"発送マスター\t0\t0\n"_s));
    QVERIFY(converted->text().contains(u"発送マスタ２\t225\t0\n"_s));
    QCOMPARE(bench.rows(u"SELECT 納品先名キー FROM 納品先 WHERE 納品先ID = 1"_s),
             QStringList{u"鈴木　太郎"_s});
}

// A part of the shop's data may lie in a second file.
void TestConversion::linkedTable()
{
    constexpr int typeAt = 10; // in a row of the list of tables, whose definition is page 2
    JetFile file(contentOf(legacyFile));
    for (const JetFile::Slot &slot : file.rows(2)) {
        if (file.row(slot).contains(JetFile::utf16(u"発送マスター"_s)))
            file.put16(file.start(slot) + typeAt, 6);
    }
    Bench bench(file.bytes);
    const auto converted = bench.convert();
    QVERIFY2(bool(converted), qPrintable(converted ? QString() : converted.error().text));
    QVERIFY(!converted->isComplete());
    QCOMPARE(converted->losses,
             QStringList{u"別のファイルへのリンクで、データがこのファイルにないテーブル「発送マスター」"_s});
    QCOMPARE(converted->notes, QStringList());
}

void TestConversion::values_data()
{
    QTest::addColumn<db::OldCell>("cell");
    QTest::addColumn<db::ColumnKind>("kind");
    QTest::addColumn<QVariant>("value"); // invalid and not NULL: refused
    const auto row = [](const char *name, const db::OldCell &cell, db::ColumnKind kind,
                        const QVariant &value) { QTest::newRow(name) << cell << kind << value; };
    using enum db::ColumnKind;
    const auto money = [](qint64 units) { return db::OldCell{Cell::Money, units, 0, {}}; };
    const auto date = [](double days) { return db::OldCell{Cell::Date, 0, days, {}}; };
    const auto number = [](double real) { return db::OldCell{Cell::Double, 0, real, {}}; };
    const auto text = [](const QString &what) { return db::OldCell{Cell::Text4, 0, 0, what}; };
    row("yen", money(227010000), Real, 22701.0);
    row("parts of a yen", money(-1), Real, -0.0001);
    row("a thousandth", money(12345678901), Real, 1234567.8901);
    row("more than doubles hold", money(std::numeric_limits<qint64>::min()), Real, {});
    row("money as text", money(std::numeric_limits<qint64>::min()), Text, u"-922337203685477.5808"_s);
    row("a day", date(38143), Date, u"2004-06-05"_s);
    row("with a time", date(38143.75), Date, u"2004-06-05"_s);
    row("the first day", date(0), Date, u"1899-12-30"_s);
    row("before the first day, with a time", date(-2.25), Date, u"1899-12-28"_s);
    row("a birthday of Meiji", date(-10000), Date, u"1872-08-13"_s);
    row("no date", date(1e9), Date, {});
    row("not a number", number(std::nan("")), Real, {});
    row("exact", number(0.1 + 0.2), Real, 0.1 + 0.2);
    row("whole", number(31), Integer, qint64(31));
    row("not whole", number(31.5), Integer, {});
    row("single", {Cell::Single, 0, double(8.1F), {}}, Real, 8.1);
    row("written date", text(u"2004/6/5"_s), Date, u"2004-06-05"_s);
    row("unwritten date", text(u"昨日"_s), Date, {});
    row("half a character", text(QString(QChar(0xd842))), Text, {});
    row("yes", {Cell::Boolean, 1, 0, {}}, Integer, qint64(1));
}

void TestConversion::values()
{
    QFETCH(db::OldCell, cell);
    QFETCH(db::ColumnKind, kind);
    QFETCH(QVariant, value);
    const db::CarriedValue carried = db::carriedOver(cell, kind);
    QCOMPARE(carried.value, value);
    QCOMPARE(carried.trouble.isEmpty(), value.isValid());
    QCOMPARE(carried.droppedTime,
             cell.kind == Cell::Date && value.isValid() && std::trunc(cell.real) != cell.real);
}

QTEST_GUILESS_MAIN(TestConversion)
#include "tst_conversion.moc"

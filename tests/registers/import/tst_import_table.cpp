#include "registers/import/import_desk.h"
#include "text/cp932.h"

#include <QStringEncoder>

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace registers;

namespace
{

QByteArray utf16(const QString &text)
{
    QStringEncoder encoder(QStringEncoder::Utf16LE, QStringConverter::Flag::WriteBom);
    return encoder(text);
}

} // namespace

class TestImportTable : public QObject
{
    Q_OBJECT

private slots:
    void readsEveryEncoding_data()
    {
        const QString csv = u"氏名,住所\r\n髙橋①,\"東京都,港区\"\r\n,\r\n"_s;
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("UTF-8") << csv.toUtf8();
        QTest::newRow("UTF-8 with mark") << (u"\ufeff"_s + csv).toUtf8();
        QTest::newRow("UTF-16") << utf16(csv);
        QTest::newRow("Shift-JIS") << *text::toCp932(csv);
        // What other programs put in place of the comma; a comma in quotes is none.
        const QString tabs = u"氏名\t\"住所,番地\"\r\n髙橋①\t\"東京都,港区\"\r\n"_s;
        QTest::newRow("tabs") << *text::toCp932(tabs);
        QTest::newRow("tabs, UTF-16") << utf16(tabs);
        QTest::newRow("semicolons") << u"氏名;住所\r\n髙橋①;東京都,港区\r\n"_s.toUtf8();
        QTest::newRow("a line that names the separator")
            << u"sep=;\r\n氏名;甲,乙\r\n髙橋①;東京都,港区\r\n"_s.toUtf8();
        QTest::newRow("the same in quotes") << u"\"SEP=|\"\r\n氏名|甲;乙\r\n髙橋①|東京都,港区\r\n"_s.toUtf8();
        // As a mail program writes it, with a vendor's ① and 髙.
        QTest::newRow("ISO-2022-JP") << QByteArray("\x1b$B;aL>\x1b(B,\x1b$B=;=j\x1b(B\r\n"
                                                   "\x1b$B|b66-!\x1b(B,\"\x1b$BEl5~ET\x1b(B,"
                                                   "\x1b$B9A6h\x1b(B\"\r\n,\r\n");
        QTest::newRow("commas, others inside") << u"氏名;甲;乙,住所\r\n髙橋①,\"東京都,港区\"\r\n"_s.toUtf8();
    }
    void readsEveryEncoding()
    {
        QFETCH(QByteArray, content);
        ImportDesk shop;
        const auto table = readImportFile(shop.file(u"in.csv"_s, content), base::unwatched);
        QVERIFY(table);
        QCOMPARE(table->rows.size(), 2U); // the row without any text is left out
        QCOMPARE(table->rows[1].cells, QStringList({u"髙橋①"_s, u"東京都,港区"_s}));
        QCOMPARE(table->rows[1].line, content.toUpper().contains("SEP=") ? 3 : 2);
    }

    void refusesDamagedFiles_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("blank") << QByteArray(" ,,\r\n\t\r\n");
        QTest::newRow("NUL") << QByteArray("a,b\0c\r\n", 7);
        QTest::newRow("half a kanji") << QByteArray("\x1b$B;aL\r\n");
        QTest::newRow("no text") << QByteArray("\xff\x80\x00\xfe\xa0\xfd", 6);
        QTest::newRow("open quote") << QByteArray("name\r\n\"abc\r\ndef\r\n");
        QTest::newRow("10,000 columns") << QByteArray(10000, ',') + "x";
    }
    void refusesDamagedFiles()
    {
        QFETCH(QByteArray, content);
        ImportDesk shop;
        const auto table = readImportFile(shop.file(u"in.csv"_s, content), base::unwatched);
        QVERIFY(!table);
        QVERIFY(!table.error().text.isEmpty());
    }

    // Rows of one letter, many more than bytes in a page of memory: what is not kept costs none.
    void boundsWhatItKeeps_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("said");
        const QByteArray row = QByteArray("a,").repeated(99) + "b\n";
        QTest::newRow("rows") << QByteArray("a\n").repeated(2'000'000)
                              << u"行が多すぎるため（200,000 まで）"_s;
        QTest::newRow("cells") << row.repeated(40'000) << u"セルが多すぎるため（3,000,000 まで）"_s;
    }
    void boundsWhatItKeeps()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, said);
        ImportDesk shop;
        const auto table = readImportFile(shop.file(u"in.csv"_s, content), base::unwatched);
        QVERIFY(!table);
        QVERIFY2(table.error().text.startsWith(said), qPrintable(table.error().text));
    }

    // A piece may end within a character, a line end or doubled quotes.
    void readsAcrossPieces_data()
    {
        QTest::addColumn<int>("shift");
        QTest::addColumn<bool>("isCodePage");
        for (int shift = 0; shift < 12; ++shift) {
            QTest::addRow("UTF-8, %d", shift) << shift << false;
            QTest::addRow("code page, %d", shift) << shift << true;
        }
    }
    void readsAcrossPieces()
    {
        QFETCH(int, shift);
        QFETCH(bool, isCodePage);
        const QString end = u"\"東\"\"京\"\r\n髙橋,表\r\n"_s;
        const QString text = QString((1 << 20) - shift - 5, u'x') + u"\n1,\r\n"_s + end;
        ImportDesk shop;
        const auto table = readImportFile(
            shop.file(u"in.csv"_s, isCodePage ? *text::toCp932(text) : text.toUtf8()), base::unwatched);
        QVERIFY(table);
        QCOMPARE(table->rows.size(), 4U);
        QCOMPARE(table->rows[2].cells, QStringList{u"東\"京"_s});
        QCOMPARE(table->rows[3].cells, (QStringList{u"髙橋"_s, u"表"_s}));
        QCOMPARE(table->rows[3].line, 4);
    }
};

QTEST_GUILESS_MAIN(TestImportTable)
#include "tst_import_table.moc"

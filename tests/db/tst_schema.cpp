// The file's tables as other programs on it use them: by statements that know nothing of the columns which
// came later.
#include "db/schema.h"
#include "support/fresh_shop.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class TestSchema : public QObject
{
    Q_OBJECT

private slots:
    void otherProgramsStatements_data();
    void otherProgramsStatements();
    void linesAreNumberedAsTheyCome();
    void kindIsTheFirstLetterAsLikeSeesIt();
    void earlierVersionsAreKnown();
    void declarationsOfFilesDoNothingElse_data();
    void declarationsOfFilesDoNothingElse();
};

void TestSchema::otherProgramsStatements_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QStringList>("expected"); // the last row's first column, and how many rows
    const auto row = [](const char16_t *statement, const QString &last, int count) {
        const QString text = QString::fromUtf16(statement);
        QTest::newRow(qPrintable(text)) << text << QStringList{last, QString::number(count)};
    };
    row(u"SELECT  単位ID FROM 単位 ORDER BY 単位ID ASC", u"9"_s, 2);
    row(u"SELECT  規格ID FROM 規格 ORDER BY 規格ID ASC", u"9"_s, 2);
    row(u"SELECT  社員ID FROM 社員 ORDER BY 社員ID ASC", u"9"_s, 2);
    row(u"SELECT  区分ID FROM 登録区分 ORDER BY 区分ID ASC", u"9"_s, 2);
    row(u"SELECT  発送区分ID FROM 発送区分 ORDER BY 発送区分ID ASC", u"9"_s, 2);
    row(u"SELECT  商品ID FROM 仕入商品 ORDER BY 商品ID ASC", u"9"_s, 2);
    row(u"SELECT  商品ID FROM 納品商品 ORDER BY 商品ID ASC", u"9"_s, 2);
    row(u"SELECT  会社ID FROM 自社情報 ORDER BY 会社ID ASC", u"9"_s, 2);
    row(u"SELECT  仕入先ID FROM 仕入先 ORDER BY 仕入先ID ASC", u"9"_s, 2);
    row(u"SELECT  納品先ID FROM 納品先 ORDER BY 納品先ID", u"9"_s, 2);
    row(u"SELECT  発送ID FROM 発送マスター ORDER BY 発送ID ASC", u"9"_s, 2);
    row(u"SELECT ID FROM 入出庫マスター ORDER BY ID ASC", u"9"_s, 2);
    row(u"SELECT * FROM 入出庫マスター ORDER BY 日付 ASC, ID ASC", u"4"_s, 2);
    row(u"SELECT * FROM 入出庫マスター WHERE 伝票番号 = 'ｏ4'", u"4"_s, 1);
    row(u"SELECT * FROM 入出庫マスター WHERE 伝票番号 LIKE 'O%' OR 伝票番号 LIKE 'R%' OR 伝票番号 LIKE 'B%' "
        u"ORDER BY 日付 ASC, ID ASC",
        u"4"_s, 2);
    row(u"SELECT ID, 商品名, 規格, 数量, 単位, 単価, 金額 FROM 入出庫サブ", u"4"_s, 2);
    row(u"SELECT * FROM 発送区分 WHERE (発送区分.発送区分名 = '9')", u"9"_s, 1);
    row(u"SELECT * FROM 発送マスター WHERE (発送区分 = '9')", u"9"_s, 1);
    row(u"SELECT * FROM 仕入商品 ORDER BY 仕入商品.商品名 ASC", u"9"_s, 2);
}

void TestSchema::otherProgramsStatements()
{
    QFETCH(QString, statement);
    QFETCH(QStringList, expected);
    FreshShop shop;
    for (const db::Table &table : db::tables()) {
        const bool isLines = table.hasOwnKeys();
        if (table.firstColumns == 0 || isLines || table.name == u"入出庫マスター"_s)
            continue;
        // The name that most tables have behind the key.
        const QString second = table.name == u"発送マスター"_s ? u"発送区分"_s : table.columns.at(1);
        shop.run(u"INSERT INTO %1 (%2, %3) VALUES (2, '2'), (9, '9')"_s.arg(table.name, table.key, second));
    }
    shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号) VALUES (9, '2026-04-01', 'R9'), "
             "(4, '2026-04-02', 'ｏ4')"_s);
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名) VALUES (9, 'a'), (4, 'b')"_s);
    const auto rows = shop.connection.select(statement);
    QVERIFY2(bool(rows), qPrintable(rows ? QString() : rows.error().text));
    QCOMPARE((QStringList{rows->rows.back().front().toString(), QString::number(rows->count())}), expected);
}

void TestSchema::linesAreNumberedAsTheyCome()
{
    FreshShop shop;
    for (const QString &name : {u"三"_s, u"一"_s, u"二"_s})
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名) VALUES (7, ?)"_s, {name});
    shop.run(u"DELETE FROM 入出庫サブ WHERE 商品名 = '一'"_s);
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額) "
             "VALUES (7, '四', NULL, NULL, NULL, NULL, 1)"_s);
    QCOMPARE(shop.rows(u"SELECT 明細ID, 商品名 FROM 入出庫サブ WHERE ID = 7 ORDER BY 明細ID"_s),
             (QStringList{u"1|三"_s, u"3|二"_s, u"4|四"_s}));
    // The columns of before stand where they stood.
    const auto all = shop.connection.select(u"SELECT * FROM 入出庫サブ"_s);
    QCOMPARE(all->columns.first(7),
             (QStringList{u"ID"_s, u"商品名"_s, u"規格"_s, u"数量"_s, u"単位"_s, u"単価"_s, u"金額"_s}));
    QCOMPARE(all->columns.last(), u"明細ID"_s);
}

// Each character that a number can begin with.
void TestSchema::kindIsTheFirstLetterAsLikeSeesIt()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号) "
             "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 65533) "
             "SELECT i, char(i) || '1' FROM n WHERE i NOT BETWEEN 55296 AND 57343"_s);
    for (const QChar letter : u"OIMRPABT"_s) {
        QCOMPARE(shop.rows(u"SELECT ID FROM 入出庫マスター WHERE (種別 = ?) <> (伝票番号 LIKE ?)"_s,
                           {QString(letter), QString(letter) + u'%'}),
                 QStringList());
        QCOMPARE(
            shop.value(u"SELECT count(*) FROM 入出庫マスター WHERE 種別 = ?"_s, {QString(letter)}).toInt(),
            4);
    }
}

// Salvage tells by them where a row that was written then may end.
void TestSchema::earlierVersionsAreKnown()
{
    for (int version = 1; version < db::schemaVersion; ++version) {
        QFile file(QStringLiteral(EARLIER_SCHEMAS "/version-%1.sql").arg(version));
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
        const std::vector<db::Table> earlier = db::tablesDeclaredBy(file.readAll());
        QVERIFY(!earlier.empty());
        for (const db::Table &now : db::declaredTables()) {
            const auto then = std::ranges::find(earlier, now.name, &db::Table::name);
            const QStringList had = then == earlier.end() ? QStringList() : then->columns;
            QStringList told;
            for (const QString &column : now.columns) {
                if (now.versionOf(column) <= version)
                    told << column;
            }
            QCOMPARE(told, had);
        }
    }
}

void TestSchema::declarationsOfFilesDoNothingElse_data()
{
    QTest::addColumn<QByteArray>("statement");
    QTest::newRow("another file") << QByteArray("VACUUM INTO '%1'");
    QTest::newRow("another database") << QByteArray("ATTACH '%1' AS a; CREATE TABLE a.t (i)");
    QTest::newRow("without an end") << QByteArray(
        "CREATE TABLE t AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i FROM n");
    const QByteArray ten =
        "(SELECT 1 UNION ALL SELECT 2 UNION ALL SELECT 3 UNION ALL SELECT 4 UNION ALL SELECT 5 "
        "UNION ALL SELECT 6 UNION ALL SELECT 7 UNION ALL SELECT 8 UNION ALL SELECT 9)";
    QTest::newRow("far too much") << "CREATE TABLE t AS SELECT 1 FROM " + QByteArrayList(12, ten).join(", ");
}

// They stand in the file that is read, and may have been made with ill will.
void TestSchema::declarationsOfFilesDoNothingElse()
{
    QFETCH(QByteArray, statement);
    const QTemporaryDir folder;
    const QString other = folder.filePath(u"other.cdb"_s);
    statement.replace("%1", other.toUtf8());
    QVERIFY(db::tablesDeclaredBy("CREATE TABLE 単位 (単位ID INTEGER PRIMARY KEY); " + statement).empty());
    QVERIFY(!QFile::exists(other));
}

QTEST_MAIN(TestSchema)
#include "tst_schema.moc"

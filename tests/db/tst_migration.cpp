#include "db/care/plain_handle.h"
#include "db/migrations.h"
#include "db/schema.h"
#include "support/earlier_version.h"
#include "support/fresh_shop.h"
#include "support/ordinary_user.h"

#include <QDir>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace
{

const QDate today(2026, 4, 1);

const db::Migrations twoSteps = {
    {db::schemaVersion + 1, "ALTER TABLE 納品先 ADD COLUMN 別名 TEXT; UPDATE 納品先 SET 別名 = '様'"},
    {db::schemaVersion + 2, "CREATE TABLE 倉庫 (倉庫ID INTEGER PRIMARY KEY, 倉庫名 TEXT)"},
};

// Rows of every table and of every sort that the screens, the earlier program and other programs leave
// behind.
QByteArray version1Rows()
{
    return "INSERT INTO 単位 (単位ID, 単位) VALUES (1, '箱'), (7, NULL), (8, '');"
           "INSERT INTO 規格 (規格ID, 規格) VALUES (3, '５ｋｇ');"
           "INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (1, '佐藤', '11'), (2, NULL, NULL);"
           "INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先');"
           "INSERT INTO 発送区分 (発送区分ID, 発送区分名) VALUES (1, 'お歳暮');"
           "INSERT INTO 仕入商品 (商品ID, 商品名) VALUES (1, '段ボール');"
           "INSERT INTO 納品商品 (商品ID, 商品名) VALUES (1, 'ふじりんご'), (5, '送料');"
           "INSERT INTO 自社情報 (会社ID, 会社名1, 備考) VALUES (1, '山田農園', x'00ff');"
           "INSERT INTO 納品先 (納品先ID, 納品先名1, 更新日, 締め日, 区分ID) VALUES"
           " (1, '株式会社　山田', '2026-03-31', 20, 1), (2147483647, '高橋', '昨日', 'x', NULL);"
           "INSERT INTO 仕入先 (仕入先ID, 仕入先名1, 消費税区分) VALUES (1, '青果', 2);"
           "INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 備考) VALUES (1, "
           "'2026-04-01', 'O1', 1, 1, 10, NULL),"
           " (2, '20240101', 'ｏ2', NULL, NULL, 5.5, 'memo'), (4, NULL, NULL, 9, 9, 'x', ''),"
           " (5, '2026-04-02', 'ｉ5', 1, 1, 8, NULL), (6, '2026-04-02', '', 1, 1, 8, NULL);"
           "INSERT INTO 発送マスター (発送ID, 受付日, 届先名1, 価格) VALUES (1, '2026-04-01', '鈴木', "
           "1980.5);"
           // The lines of two slips in turns, with gaps and one that was put in before the others.
           "INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額) VALUES (1, 'りんご', '大', "
           "1.5, '箱', 1000, 1500);"
           "INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額) VALUES (2, 'みかん', NULL, "
           "'many', '', 0.1, -3);"
           "INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額) VALUES (1, '消費税', NULL, "
           "NULL, NULL, NULL, 150);"
           "INSERT INTO 入出庫サブ (rowid, ID, 商品名) VALUES (900, 1, '追加'), (-5, 1, '先頭'), (500, 99, "
           "'孤児');";
}

// What version 2 brought along, beside rows of before.
QByteArray version2Rows()
{
    return version1Rows() +
           "UPDATE 版数 SET 最終 = 41; UPDATE 税率 SET 有効 = 1 WHERE 税率ID = 7;"
           "UPDATE 入出庫マスター SET 内税 = 1, 摘要 = '急ぎ', 元伝票 = 4, 完了 = 0, 版 = 41 WHERE ID = 1;"
           "UPDATE 入出庫サブ SET 税区分 = 1, 税率 = 8 WHERE 商品名 = 'りんご';"
           "UPDATE 納品先 SET 敬称 = '御中', 版 = 40 WHERE 納品先ID = 1;"
           "UPDATE 仕入先 SET 登録 = 1, 登録開始日 = '2023-10-01';"
           "INSERT INTO 発行控 (発行ID, 種類, 番号, 伝票種別, 税込金額, ハッシュ) VALUES "
           "(1, '納品書', 'O1', 'O', 1650, '9f');";
}

// The same of version 3.
QByteArray version3Rows()
{
    return version2Rows() + "UPDATE 発送マスター SET 送り状番号 = '1234-5678-9012', 納品先ID = 1, 伝票ID = "
                            "1, 備考1 = '御中元', "
                            "印刷日 = '2026-04-02', 版 = 41;"
                            "INSERT INTO 入金取込 (取込ID, 行キー, 金額, 伝票ID) VALUES (1, 'k', 1650, 1);";
}

// The rows with their types, in the columns of \a version and in the order in which it read them.
QStringList contentsOf(const QString &fileName, int version, bool isMigrated)
{
    QStringList contents;
    db::PlainHandle file;
    if (!file.open(fileName))
        qFatal("cannot open %s", qPrintable(fileName));
    for (const db::Table &table : db::declaredTables()) {
        QStringList columns = table.columns;
        columns.removeIf([&](const QString &column) { return table.versionOf(column) > version; });
        if (columns.isEmpty() || (version == 1 && table.firstColumns == 0))
            continue;
        const QString order = isMigrated || columns.contains(table.key) ? table.key : u"rowid"_s;
        const QString statement = u"SELECT quote(%1) FROM %2 ORDER BY %3"_s.arg(
            columns.join(u") || ' ' || quote("_s), table.name, order);
        db::PlainStatement rows(file, statement.toUtf8());
        while (rows.step() == SQLITE_ROW)
            contents << table.name + u' ' + rows.text(0);
    }
    return contents;
}

// What the file is like, but for the spelling of its definitions.
QStringList definitionsIn(const QString &fileName)
{
    QStringList definitions;
    db::PlainHandle file;
    if (!file.open(fileName))
        qFatal("cannot open %s", qPrintable(fileName));
    for (const char *sql :
         {"SELECT t.name || ' ' || c.name || ' ' || c.type || c.pk || c.hidden FROM sqlite_schema t, "
          "pragma_table_xinfo(t.name) c WHERE t.type = 'table' ORDER BY t.name, c.cid",
          "SELECT sql FROM sqlite_schema WHERE type = 'index' ORDER BY name",
          "SELECT 税区分 || 開始日 || coalesce(終了日, '-') || 税率 || 有効 FROM 税率 ORDER BY 税率ID",
          "SELECT 最終 FROM 版数"}) {
        db::PlainStatement rows(file, sql);
        while (rows.step() == SQLITE_ROW)
            definitions << rows.text(0);
    }
    return definitions;
}

} // namespace

class TestMigration : public QObject
{
    Q_OBJECT

private slots:
    void theProgramsOwnListIsWhole();
    void earlierVersionKeepsEveryValue_data();
    void earlierVersionKeepsEveryValue();
    void earlierVersionBecomesLikeANewFile();
    void version1ThatCannotBeMovedStays_data();
    void version1ThatCannotBeMovedStays();
    void oldFileIsMovedAndKept();
    void failureLeavesTheFile_data();
    void failureLeavesTheFile();
    void othersAreLeftAlone();

private:
    static qint64 number(const QString &fileName, const QByteArray &sql)
    {
        db::PlainHandle file;
        if (!file.open(fileName))
            qFatal("cannot open %s", qPrintable(fileName));
        const auto found = file.number(sql);
        return found ? *found : -1;
    }
};

// Every version since the first has its step, and the last one leads to the schema of new files.
void TestMigration::theProgramsOwnListIsWhole()
{
    int version = 1;
    for (const db::Migration &step : db::migrations())
        QCOMPARE(step.version, ++version);
    QCOMPARE(version, db::schemaVersion);
}

void TestMigration::earlierVersionKeepsEveryValue_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("rows");
    QTest::newRow("1") << 1 << 27;
    QTest::newRow("2") << 2 << 27 + 7 + 1 + 1;     // tax rates, a document, the counter
    QTest::newRow("3") << 3 << 27 + 7 + 1 + 1 + 1; // a receipt that was taken
}

void TestMigration::earlierVersionKeepsEveryValue()
{
    QFETCH(int, version);
    QFETCH(int, rows);
    QTemporaryDir folder;
    const QString file = folder.filePath(u"shop.cdb"_s);
    makeVersion(version, file,
                version == 1   ? version1Rows()
                : version == 2 ? version2Rows()
                               : version3Rows());
    const QStringList before = contentsOf(file, version, false);
    QCOMPARE(before.size(), rows);
    QVERIFY(db::migrate(file, today));
    QCOMPARE(contentsOf(file, version, true), before);
    const QString kept = folder.filePath(u"shop 版%1 2026-04-01.cdb"_s.arg(version));
    QCOMPARE(contentsOf(kept, version, false), before);
    db::Connection connection;
    QVERIFY(connection.open(file));
    const auto kinds = connection.select(u"SELECT group_concat(coalesce(種別, '-')) FROM 入出庫マスター"_s);
    QCOMPARE(kinds->rows.front().front().toString(), u"O,O,-,I,"_s);
    QCOMPARE(connection.select(u"PRAGMA integrity_check"_s)->rows.front().front().toString(), u"ok"_s);
}

void TestMigration::earlierVersionBecomesLikeANewFile()
{
    for (int version = 1; version < db::schemaVersion; ++version) {
        FreshShop shop;
        shop.connection.close();
        const QString file = shop.path(u"old.cdb"_s);
        makeVersion(version, file);
        QVERIFY(db::migrate(file, today));
        QCOMPARE(definitionsIn(file), definitionsIn(shop.path(u"shop.cdb"_s)));
    }
}

void TestMigration::version1ThatCannotBeMovedStays_data()
{
    QTest::addColumn<QString>("hindrance");
    QTest::addColumn<QString>("told");
    QTest::newRow("damaged") << u"damaged"_s << u"壊れている"_s;
    QTest::newRow("in use") << u"in use"_s << u"使用中"_s;
    QTest::newRow("read-only") << u"read-only"_s << u"読み取り専用"_s;
    QTest::newRow("a column that only another program had") << u"column"_s << u"処理に失敗した"_s;
}

void TestMigration::version1ThatCannotBeMovedStays()
{
    QFETCH(QString, hindrance);
    QFETCH(QString, told);
    QTemporaryDir folder;
    const QString file = folder.filePath(u"shop.cdb"_s);
    makeVersion(1, file,
                version1Rows() +
                    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 900) "
                    "INSERT INTO 入出庫サブ (ID, 商品名) SELECT 1, '商品' || i FROM n;" +
                    (hindrance == u"column" ? "ALTER TABLE 納品先 ADD COLUMN 敬称 TEXT" : ""));
    QFile bytes(file);
    QVERIFY(bytes.open(QIODevice::ReadWrite));
    if (hindrance == u"damaged") { // a page of lines in the middle
        bytes.seek(bytes.readAll().indexOf("商品450") / 4096 * 4096);
        bytes.write(QByteArray(4096, 'x'));
    }
    bytes.seek(0);
    const QByteArray before = bytes.readAll();
    bytes.close();
    db::PlainHandle other;
    if (hindrance == u"in use")
        QVERIFY(other.open(file) && other.run("BEGIN EXCLUSIVE"));
    base::Status moved;
    {
        const OrdinaryUser user({folder.path(), file});
        if (hindrance == u"read-only")
            QFile::setPermissions(file, QFile::ReadOwner);
        moved = db::migrate(file, today);
    }
    QVERIFY(!moved);
    QVERIFY2(moved.error().text.startsWith(u"古い版のデータベースを"_s) && moved.error().text.contains(told),
             qPrintable(moved.error().text));
    other.close();
    QVERIFY(bytes.open(QIODevice::ReadOnly));
    QCOMPARE(bytes.readAll(), before);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{u"shop.cdb"_s}); // no copy, no journal
}

void TestMigration::oldFileIsMovedAndKept()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1) VALUES (1, '山田')"_s);
    shop.connection.close();
    const QString file = shop.path(u"shop.cdb"_s);
    QVERIFY(db::migrate(file, today, twoSteps));
    QCOMPARE(number(file, "PRAGMA user_version"), db::schemaVersion + 2);
    QCOMPARE(number(file, "SELECT count(*) FROM 納品先 WHERE 別名 = '様'"), 1);
    QCOMPARE(number(file, "SELECT count(*) FROM 倉庫"), 0);
    const QString kept = shop.path(u"shop 版%1 2026-04-01.cdb"_s.arg(db::schemaVersion));
    QCOMPARE(number(kept, "PRAGMA user_version"), db::schemaVersion);
    QCOMPARE(number(kept, "SELECT count(*) FROM 納品先"), 1);
    // Up to date: nothing more is done or kept.
    QVERIFY(db::migrate(file, today, twoSteps));
    QCOMPARE(QDir(shop.folder.path()).entryList({u"*版*"_s}).size(), 1);
    // This program is older than the file now.
    QVERIFY(!shop.connection.open(file));
}

void TestMigration::failureLeavesTheFile_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<QByteArray>("statements");
    QTest::newRow("second step fails") << db::schemaVersion + 2 << QByteArray("CREATE TABLE 納品先 (x)");
    QTest::newRow("a step is missing") << db::schemaVersion + 3 << QByteArray("CREATE TABLE 倉庫 (x)");
}

void TestMigration::failureLeavesTheFile()
{
    QFETCH(int, version);
    QFETCH(QByteArray, statements);
    FreshShop shop;
    shop.connection.close();
    const QString file = shop.path(u"shop.cdb"_s);
    QVERIFY(!db::migrate(file, today, {twoSteps.front(), {version, statements}}));
    QCOMPARE(QDir(shop.folder.path()).entryList(QDir::Files), QStringList{u"shop.cdb"_s});
    QVERIFY(shop.connection.open(file));
    QVERIFY(!shop.connection.select(u"SELECT 別名 FROM 納品先"_s));
}

void TestMigration::othersAreLeftAlone()
{
    FreshShop shop;
    shop.run(u"CREATE TRIGGER t AFTER UPDATE ON 納品先 BEGIN DELETE FROM 納品先; END"_s);
    shop.connection.close();
    const QString file = shop.path(u"shop.cdb"_s);
    QVERIFY(!db::migrate(file, today, twoSteps)); // a trigger would be carried out by the steps
    QCOMPARE(number(file, "PRAGMA user_version"), db::schemaVersion);
    QVERIFY(db::migrate(shop.path(u"missing.cdb"_s), today, twoSteps));
    QVERIFY(!QFile::exists(shop.path(u"missing.cdb"_s)));
}

QTEST_MAIN(TestMigration)
#include "tst_migration.moc"

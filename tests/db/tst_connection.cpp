#include "support/fresh_shop.h"

#include "db/care/backup.h"
#include "db/create.h"
#include "db/keys.h"
#include "db/schema.h"
#include "db/transaction.h"
#include "support/ordinary_user.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace
{

/// Another program's handle on a file.
class OtherProgram
{
public:
    explicit OtherProgram(const QString &fileName) { sqlite3_open(fileName.toUtf8().constData(), &m_handle); }
    ~OtherProgram() { sqlite3_close(m_handle); }
    OtherProgram(const OtherProgram &) = delete;
    OtherProgram &operator=(const OtherProgram &) = delete;

    int run(const char *sql) { return sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr); }

private:
    sqlite3 *m_handle = nullptr;
};

// The declaration of the slips' kind in a new file.
QByteArray ownKind()
{
    const QString schema = db::schemaSql();
    const qsizetype from = schema.indexOf(u"種別 TEXT"_s);
    return schema.mid(from, schema.indexOf(u'\n', from) - from).toUtf8();
}

QByteArray contentsOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &fileName, const QByteArray &contents)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contents);
}

} // namespace

class TestConnection : public QObject
{
    Q_OBJECT

private slots:
    void anotherLibraryIsRefused();
    void initialFileHasAllTables();
    void refusedFiles_data();
    void refusedFiles();
    void damagedFilesNeverCrash();
    void hiddenTriggersNeverFire_data();
    void hiddenTriggersNeverFire();
    void missingIndexesAreMade();
    void movedFileIsTold();
    void readOnlyFileIsRefused();
    void lockedFileIsRefused();
    void writeAheadLogIsGivenUp();
    void foldedLike();
    void boundTextIsNeverSql();
    void keysAndGaps();
    void twoProgramsNeverTakeTheSameKey();
    void failedActionLeavesNothing_data();
    void failedActionLeavesNothing();
    void refusedCommitRollsBack();
    void fullDiskLosesNothing();
    void backupReplacesOnlyWhenComplete();
};

void TestConnection::initialFileHasAllTables()
{
    FreshShop shop;
    QCOMPARE(db::tables().size(), std::size_t(17));
    for (const db::Table &table : db::tables()) {
        QVERIFY2(shop.connection.select(u"SELECT * FROM "_s + table.name), qPrintable(table.name));
        QVERIFY2(!table.key.isEmpty(), qPrintable(table.name));
    }
    QCOMPARE(shop.value(u"PRAGMA application_id"_s).toUInt(), 0x4B414E42U);
    QCOMPARE(shop.value(u"PRAGMA synchronous"_s).toInt(), 3);
    QCOMPARE(shop.value(u"PRAGMA journal_mode"_s).toString(), u"delete"_s);
    // The defensive mode: nobody writes the schema as if it were a table.
    (void)shop.connection.select(u"PRAGMA writable_schema = ON"_s);
    QVERIFY(!shop.connection.execute(u"DELETE FROM sqlite_schema"_s));
}

void TestConnection::refusedFiles_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("reason");
    QTemporaryDir folder;
    const QString valid = folder.filePath(u"valid.cdb"_s);
    QVERIFY(db::createDatabase(valid));
    const QByteArray good = contentsOf(valid);
    const auto changed = [&](const char *sql) {
        const QString copy = folder.filePath(u"copy.cdb"_s);
        QFile::remove(copy);
        QFile::copy(valid, copy);
        OtherProgram other(copy);
        if (other.run(sql) != SQLITE_OK)
            qFatal("%s", sql);
        return contentsOf(copy);
    };
    QTest::newRow("empty") << QByteArray() << u"データベースファイルではない"_s;
    QTest::newRow("short") << good.left(60) << u"データベースファイルではない"_s;
    QTest::newRow("text") << QByteArray(4096, 'x') << u"データベースファイルではない"_s;
    QTest::newRow("old engine") << QByteArray::fromHex("00010000") + "Standard Jet DB" + QByteArray(4096, 0)
                                << u"以前の形式"_s;
    QTest::newRow("foreign") << changed("PRAGMA application_id = 7") << u"このプログラムの"_s;
    const QByteArray newer = "PRAGMA user_version = " + QByteArray::number(db::schemaVersion + 1);
    QTest::newRow("newer") << changed(newer.constData()) << u"新しい版"_s;
    QTest::newRow("no version") << changed("PRAGMA user_version = 0") << u"版が正しくない"_s;
    QTest::newRow("table missing") << changed("DROP TABLE 規格") << u"規格"_s;
    QTest::newRow("column missing") << changed("ALTER TABLE 社員 DROP COLUMN 内線番号") << u"内線番号"_s;
    QTest::newRow("trigger") << changed("CREATE TRIGGER t AFTER INSERT ON 社員 BEGIN DELETE FROM 納品先; END")
                             << u"定義（t）"_s;
    QTest::newRow("view") << changed("CREATE VIEW v AS SELECT 1") << u"定義（v）"_s;
    // No other column may be worked out, and not this one in another way.
    const auto redeclared = [&](const QByteArray &column) {
        return changed(
            ("DROP INDEX 入出庫マスター_種別; DROP INDEX 入出庫マスター_相手先; "
             "ALTER TABLE 入出庫マスター DROP COLUMN 種別; ALTER TABLE 入出庫マスター ADD COLUMN " +
             column)
                .constData());
    };
    QTest::newRow("generated column")
        << changed("ALTER TABLE 社員 ADD COLUMN g AS (upper(社員名))") << u"定義（g）"_s;
    QTest::newRow("other kind") << redeclared("種別 TEXT AS (upper(備考))") << u"定義（種別）"_s;
    QTest::newRow("kind in a comment")
        << redeclared("種別 TEXT AS (upper(備考)) /* , " + ownKind() + ") */") << u"定義（種別）"_s;
    QTest::newRow("kind in a text")
        << redeclared("種別 TEXT AS (upper(備考)); ALTER TABLE 入出庫マスター ADD COLUMN z DEFAULT ', " +
                      ownKind() + ")'")
        << u"定義（種別）"_s;
    QTest::newRow("no kind") << redeclared("何か TEXT") << u"種別"_s;
    QTest::newRow("kind as plain text") << redeclared("種別 TEXT") << u"種別"_s;
    QTest::newRow("empty counter") << changed("DELETE FROM 版数") << u"版数"_s;
    QTest::newRow("second, odd counter") << changed("INSERT INTO 版数 (最終) VALUES ('x')") << u"版数"_s;
    QTest::newRow("two counters") << changed("INSERT INTO 版数 (最終) VALUES (7)") << u"版数"_s;
    QTest::newRow("counter at its end") << changed("UPDATE 版数 SET 最終 = 9223372036854775807") << u"版数"_s;
    QTest::newRow("no counter") << changed("DROP TABLE 版数") << u"版数"_s;
    QTest::newRow("cut off") << good.left(4096) << u""_s;
}

void TestConnection::refusedFiles()
{
    QFETCH(QByteArray, contents);
    QFETCH(QString, reason);
    FreshShop shop;
    const QString fileName = shop.path(u"bad.cdb"_s);
    write(fileName, contents);
    const base::Status opened = shop.connection.open(fileName);
    QVERIFY(!opened);
    QVERIFY2(opened.error().text.contains(reason), qPrintable(opened.error().text));
    QVERIFY(!shop.connection.isOpen());
    QCOMPARE(contentsOf(fileName), contents);
    QVERIFY(shop.connection.open(shop.path(u"shop.cdb"_s)));
}

// A file in which bytes were flipped opens or does not, and works or gives errors; it never ends the program.
void TestConnection::damagedFilesNeverCrash()
{
    FreshShop shop;
    for (int i = 1; i <= 50; ++i)
        shop.run(u"INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (?, ?, ?)"_s,
                 {i, u"社員%1"_s.arg(i), u"10%1"_s.arg(i)});
    shop.connection.close();
    const QByteArray good = contentsOf(shop.path(u"shop.cdb"_s));
    const QString fileName = shop.path(u"damaged.cdb"_s);
    QRandomGenerator random(20260401);
    for (int round = 0; round < 300; ++round) {
        QByteArray bad = good;
        for (int flips = 1 + round % 20; flips > 0; --flips)
            bad[random.bounded(bad.size())] = static_cast<char>(random.bounded(256));
        write(fileName, bad);
        if (!shop.connection.open(fileName))
            continue;
        (void)shop.connection.select(u"SELECT * FROM 社員 ORDER BY 社員名"_s);
        (void)shop.connection.execute(
            u"INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (999, 'x', 'y')"_s);
        (void)shop.connection.execute(u"DELETE FROM 社員"_s);
    }
    shop.connection.close();
}

void TestConnection::hiddenTriggersNeverFire_data()
{
    QTest::addColumn<QByteArray>("disguise");
    QTest::newRow("in capitals") << QByteArray("type = 'TRIGGER'");
    QTest::newRow("as a table") << QByteArray("type = 'table', rootpage = 2");
    QTest::newRow("as an index") << QByteArray("type = 'index', rootpage = 2");
    QTest::newRow("as nothing known") << QByteArray("type = 'note', rootpage = 2");
}

// SQLite reads the statement of a definition, not what the file calls it.
void TestConnection::hiddenTriggersNeverFire()
{
    QFETCH(QByteArray, disguise);
    FreshShop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID) VALUES (1)"_s);
    shop.connection.close();
    sqlite3 *other = nullptr;
    QCOMPARE(sqlite3_open(QFile::encodeName(shop.path(u"shop.cdb"_s)).constData(), &other), SQLITE_OK);
    const QByteArray statements = "CREATE TRIGGER t AFTER INSERT ON 社員 BEGIN DELETE FROM 納品先; END;"
                                  "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET " +
                                  disguise + " WHERE name = 't'";
    QCOMPARE(sqlite3_exec(other, statements.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(other);
    if (shop.connection.open(shop.path(u"shop.cdb"_s)))
        (void)shop.connection.execute(u"INSERT INTO 社員 (社員ID) VALUES (1)"_s);
    shop.connection.close();
    QCOMPARE(sqlite3_open(QFile::encodeName(shop.path(u"shop.cdb"_s)).constData(), &other), SQLITE_OK);
    // The witness reads what SQLite would refuse for such a definition.
    QCOMPARE(sqlite3_exec(other, "PRAGMA writable_schema = ON", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_stmt *count = nullptr;
    QCOMPARE(sqlite3_prepare_v2(other, "SELECT count(*) FROM 納品先", -1, &count, nullptr), SQLITE_OK);
    QCOMPARE(sqlite3_step(count), SQLITE_ROW);
    QCOMPARE(sqlite3_column_int(count, 0), 1);
    sqlite3_finalize(count);
    sqlite3_close(other);
}

void TestConnection::missingIndexesAreMade()
{
    FreshShop shop;
    const QString indexes =
        u"SELECT name, tbl_name, sql FROM sqlite_schema WHERE type = 'index' ORDER BY name"_s;
    const QStringList before = shop.rows(indexes);
    shop.run(u"DROP INDEX 入出庫マスター_未完了"_s);
    shop.run(u"DROP INDEX 発送マスター_名キー"_s);
    shop.connection.close();
    {
        // It is opened all the same while another program reads.
        OtherProgram other(shop.path(u"shop.cdb"_s));
        QCOMPARE(other.run("BEGIN; SELECT count(*) FROM 単位"), SQLITE_OK);
        QVERIFY(shop.connection.open(shop.path(u"shop.cdb"_s)));
        shop.connection.close();
    }
    QVERIFY(shop.connection.open(shop.path(u"shop.cdb"_s)));
    QCOMPARE(shop.rows(indexes), before);
}

void TestConnection::movedFileIsTold()
{
    FreshShop shop;
    QVERIFY(QFile::rename(shop.path(u"shop.cdb"_s), shop.path(u"moved.cdb"_s)));
    const auto saved = shop.connection.execute(u"INSERT INTO 単位 (単位ID, 単位) VALUES (1, '個')"_s);
    QVERIFY(!saved);
    QVERIFY2(saved.error().text.contains(u"移動または削除"_s), qPrintable(saved.error().text));
}

void TestConnection::readOnlyFileIsRefused()
{
    FreshShop shop;
    shop.connection.close();
    const QString fileName = shop.path(u"shop.cdb"_s);
    QFile::setPermissions(fileName, QFile::ReadOwner);
    {
        const OrdinaryUser user({shop.folder.path(), fileName});
        const base::Status opened = shop.connection.open(fileName);
        QVERIFY(!opened);
        QVERIFY2(opened.error().text.contains(u"読み取り専用"_s), qPrintable(opened.error().text));
    }
    QFile::setPermissions(fileName, QFile::ReadOwner | QFile::WriteOwner);
    QVERIFY(shop.connection.open(fileName));
}

void TestConnection::lockedFileIsRefused()
{
    FreshShop shop;
    shop.connection.close();
    OtherProgram other(shop.path(u"shop.cdb"_s));
    QCOMPARE(other.run("BEGIN EXCLUSIVE"), SQLITE_OK);
    const base::Status opened = shop.connection.open(shop.path(u"shop.cdb"_s));
    QVERIFY(!opened);
    QVERIFY2(opened.error().text.contains(u"使用中"_s), qPrintable(opened.error().text));
    QCOMPARE(other.run("COMMIT"), SQLITE_OK);
    QVERIFY(shop.connection.open(shop.path(u"shop.cdb"_s)));
}

// The data is always the one file, also when another program had it otherwise.
void TestConnection::writeAheadLogIsGivenUp()
{
    FreshShop shop;
    const QString fileName = shop.path(u"shop.cdb"_s);
    shop.connection.close();
    {
        OtherProgram other(fileName);
        QCOMPARE(other.run("PRAGMA journal_mode = WAL; INSERT INTO 単位 (単位ID, 単位) VALUES (1, '個')"),
                 SQLITE_OK);
        const base::Status opened = shop.connection.open(fileName);
        QVERIFY(!opened);
        QVERIFY2(opened.error().text.contains(u"使用中"_s), qPrintable(opened.error().text));
    }
    QVERIFY(shop.connection.open(fileName));
    QCOMPARE(shop.value(u"SELECT 単位 FROM 単位"_s).toString(), u"個"_s);
    QVERIFY(!QFile::exists(fileName + u"-wal"_s));
    QCOMPARE(shop.value(u"PRAGMA journal_mode"_s).toString(), u"delete"_s);
}

void TestConnection::foldedLike()
{
    FreshShop shop;
    const QStringList names{u"やまだ"_s, u"ヤマダ"_s, u"ﾔﾏﾀﾞ"_s, u"山田"_s, u"ＡＢＣ"_s, u"abc"_s};
    for (int i = 0; i < names.size(); ++i)
        shop.run(u"INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (?, ?, NULL)"_s, {i, names.at(i)});
    const auto found = [&](const QString &pattern) {
        return shop.rows(u"SELECT 社員ID FROM 社員 WHERE 社員名 LIKE ? ORDER BY 社員ID"_s, {pattern})
            .join(u' ');
    };
    QCOMPARE(found(u"%ﾔﾏﾀﾞ%"_s), u"0 1 2"_s);
    QCOMPARE(found(u"%まだ%"_s), u"0 1 2"_s);
    QCOMPARE(found(u"%ａＢ%"_s), u"4 5"_s);
    QCOMPARE(found(u"山_"_s), u"3"_s);
    QCOMPARE(shop.rows(u"SELECT NULL LIKE 'a', 'a%b' LIKE 'a!%b' ESCAPE '!', 'axb' LIKE 'a!%b' ESCAPE '!'"_s),
             QStringList{u"-|1|0"_s});
    // The pattern changes from row to row.
    QCOMPARE(shop.rows(u"SELECT count(*) FROM 社員 a, 社員 b WHERE a.社員名 LIKE b.社員名"_s),
             QStringList{u"14"_s});
}

void TestConnection::boundTextIsNeverSql()
{
    FreshShop shop;
    const QString nasty = u"'; DROP TABLE 社員; -- \"%_\\ 😀 𠮷"_s;
    shop.run(u"INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (1, ?, ?)"_s, {nasty, u"a\0b"_s});
    QCOMPARE(shop.value(u"SELECT 社員名 FROM 社員 WHERE 社員名 = ?"_s, {nasty}).toString(), nasty);
    QCOMPARE(shop.value(u"SELECT 内線番号 FROM 社員"_s).toString(), u"ab"_s);
}

void TestConnection::keysAndGaps()
{
    FreshShop shop;
    const auto next = [&] { return *db::nextKey(shop.connection, u"単位"_s); };
    QCOMPARE(next(), 1);
    for (const int key : {1, 2, 5})
        shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (?, '個')"_s, {key});
    QCOMPARE(next(), 6);
    shop.run(u"DELETE FROM 単位 WHERE 単位ID = 2"_s);
    QCOMPARE(next(), 6);
    shop.run(u"DELETE FROM 単位 WHERE 単位ID = 5"_s);
    QCOMPARE(next(), 2);
    shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (2147483647, '箱')"_s);
    QCOMPARE(next(), 2);
    shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (2147483646, '箱')"_s);
    QCOMPARE(next(), 2);
}

void TestConnection::twoProgramsNeverTakeTheSameKey()
{
    FreshShop shop;
    db::Connection second;
    QVERIFY(second.open(shop.path(u"shop.cdb"_s)));
    QVERIFY(second.execute(u"PRAGMA busy_timeout = 50"_s));
    const auto keyOfSecond = [&] {
        return db::atomically(second, [&] { return db::nextKey(second, u"単位"_s); });
    };
    qint64 key = 0;
    QVERIFY(db::atomically(shop.connection, [&]() -> base::Status {
        key = *db::nextKey(shop.connection, u"単位"_s);
        shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (?, '個')"_s, {key});
        return keyOfSecond() ? base::Error{u"the second took a key meanwhile"_s} : base::Status();
    }));
    QCOMPARE(*keyOfSecond(), key + 1);
}

void TestConnection::failedActionLeavesNothing_data()
{
    QTest::addColumn<bool>("innerFails");
    QTest::addColumn<bool>("outerFails");
    QTest::addColumn<QStringList>("kept");
    QTest::newRow("both done") << false << false << QStringList{u"外"_s, u"中"_s, u"後"_s};
    QTest::newRow("inner fails, outer goes on") << true << false << QStringList{u"外"_s, u"後"_s};
    QTest::newRow("outer fails after inner was done") << false << true << QStringList();
    QTest::newRow("both fail") << true << true << QStringList();
}

void TestConnection::failedActionLeavesNothing()
{
    QFETCH(bool, innerFails);
    QFETCH(bool, outerFails);
    FreshShop shop;
    const auto outcome = [](bool fails) {
        return fails ? base::Result<int>(base::Error{u"失敗"_s}) : base::Result<int>(7);
    };
    const auto done = db::atomically(shop.connection, [&] {
        shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (1, '外')"_s);
        const auto inner = db::atomically(shop.connection, [&] {
            shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (2, '中')"_s);
            return outcome(innerFails);
        });
        if (bool(inner) == innerFails || !shop.connection.inTransaction())
            return base::Result<int>(0);
        shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (3, '後')"_s);
        return outcome(outerFails);
    });
    QVERIFY(!shop.connection.inTransaction());
    QTEST(shop.rows(u"SELECT 単位 FROM 単位 ORDER BY 単位ID"_s), "kept");
    if (outerFails)
        QCOMPARE(done.error().text, u"失敗"_s);
    else
        QCOMPARE(*done, 7);
}

// Another program that reads holds the write back at its very end.
void TestConnection::refusedCommitRollsBack()
{
    FreshShop shop;
    QVERIFY(shop.connection.select(u"PRAGMA busy_timeout = 20"_s));
    OtherProgram other(shop.path(u"shop.cdb"_s));
    QCOMPARE(other.run("BEGIN; SELECT count(*) FROM 単位"), SQLITE_OK);
    const auto done = db::atomically(shop.connection, [&] {
        return shop.connection.execute(u"INSERT INTO 単位 (単位ID, 単位) VALUES (1, '個')"_s);
    });
    QVERIFY(!done);
    QVERIFY2(done.error().text.contains(u"使用中"_s), qPrintable(done.error().text));
    QVERIFY(!shop.connection.inTransaction());
    QCOMPARE(other.run("COMMIT"), SQLITE_OK);
    QCOMPARE(shop.value(u"SELECT count(*) FROM 単位"_s).toInt(), 0);
}

// SQLite's own page limit gives the same error as a full disk.
void TestConnection::fullDiskLosesNothing()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (1, '個')"_s);
    const QString pages = shop.value(u"PRAGMA page_count"_s).toString();
    QVERIFY(shop.connection.select(u"PRAGMA max_page_count = "_s + pages));
    base::Result<int> written = 1;
    for (int key = 2; key < 1000 && written; ++key)
        written = db::atomically(shop.connection, [&] {
            return shop.connection.execute(u"INSERT INTO 単位 (単位ID, 単位) VALUES (?, ?)"_s,
                                           {key, QString(500, u'個')});
        });
    QVERIFY(!written);
    QVERIFY2(written.error().text.contains(u"空き容量"_s), qPrintable(written.error().text));
    QVERIFY(!shop.connection.inTransaction());
    QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
    const int rows = shop.value(u"SELECT count(*) FROM 単位"_s).toInt();
    QCOMPARE(shop.value(u"SELECT max(単位ID) FROM 単位"_s).toInt(), rows);
}

void TestConnection::backupReplacesOnlyWhenComplete()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (1, '個')"_s);
    const QString backup = shop.path(u"BackupKanbalore.cdb"_s);
    QVERIFY(db::copyDatabase(shop.connection, backup));
    shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (2, '箱')"_s);
    QVERIFY(db::copyDatabase(shop.connection, backup));
    {
        db::Connection copy;
        QVERIFY(copy.open(backup));
        QCOMPARE(copy.select(u"SELECT 単位 FROM 単位"_s)->count(), 2);
    }
    // Left by a program that broke off in an older backup; played back, it would damage the new one.
    write(backup + u"-journal"_s, "old journal");
    QVERIFY(db::copyDatabase(shop.connection, backup));
    QVERIFY(!QFile::exists(backup + u"-journal"_s));

    const QByteArray before = contentsOf(backup);
    db::Connection elsewhere;
    QVERIFY(elsewhere.open(backup));
    QVERIFY(!db::copyDatabase(shop.connection, backup));
    elsewhere.close();
    QCOMPARE(QDir(shop.folder.path()).entryList({u"*.tmp*"_s}), QStringList());
    QCOMPARE(contentsOf(backup), before);
    QVERIFY(!db::copyFile(shop.path(u"shop.cdb"_s), backup));
    QCOMPARE(contentsOf(backup), before);
}

void TestConnection::anotherLibraryIsRefused()
{
    const QString ours = QString::fromLatin1(sqlite3_sourceid());
    QVERIFY(db::sameLibrary(ours, ours));
    const base::Status refused =
        db::sameLibrary(u"2019-10-10 20:19:45 18db032d058f1436ce3dea84081f4ee5"_s, ours);
    QVERIFY(!refused);
    QVERIFY2(refused.error().text.contains(u"2019-10-10 20:19:45）"_s), qPrintable(refused.error().text));
}

QTEST_GUILESS_MAIN(TestConnection)
#include "tst_connection.moc"

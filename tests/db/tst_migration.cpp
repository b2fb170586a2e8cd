#include "db/care/plain_handle.h"
#include "db/migrations.h"
#include "db/schema.h"
#include "support/fresh_shop.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QDate today(2026, 4, 1);

const db::Migrations twoSteps = {
    {2, "ALTER TABLE 納品先 ADD COLUMN 敬称 TEXT; UPDATE 納品先 SET 敬称 = '様'"},
    {3, "CREATE TABLE 税率 (開始日 TEXT PRIMARY KEY, 率 REAL)"},
};

} // namespace

class TestMigration : public QObject
{
    Q_OBJECT

private slots:
    void theProgramsOwnListIsWhole();
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

void TestMigration::oldFileIsMovedAndKept()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1) VALUES (1, '山田')"_s);
    shop.connection.close();
    const QString file = shop.path(u"shop.cdb"_s);
    QVERIFY(db::migrate(file, today, twoSteps));
    QCOMPARE(number(file, "PRAGMA user_version"), 3);
    QCOMPARE(number(file, "SELECT count(*) FROM 納品先 WHERE 敬称 = '様'"), 1);
    QCOMPARE(number(file, "SELECT count(*) FROM 税率"), 0);
    const QString kept = shop.path(u"shop 版1 2026-04-01.cdb"_s);
    QCOMPARE(number(kept, "PRAGMA user_version"), 1);
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
    QTest::newRow("second step fails") << 3 << QByteArray("CREATE TABLE 納品先 (x)");
    QTest::newRow("a step is missing") << 4 << QByteArray("CREATE TABLE 税率 (x)");
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
    QVERIFY(!shop.connection.select(u"SELECT 敬称 FROM 納品先"_s));
}

void TestMigration::othersAreLeftAlone()
{
    FreshShop shop;
    shop.run(u"CREATE TRIGGER t AFTER UPDATE ON 納品先 BEGIN DELETE FROM 納品先; END"_s);
    shop.connection.close();
    const QString file = shop.path(u"shop.cdb"_s);
    QVERIFY(!db::migrate(file, today, twoSteps)); // a trigger would be carried out by the steps
    QCOMPARE(number(file, "PRAGMA user_version"), 1);
    QVERIFY(db::migrate(shop.path(u"missing.cdb"_s), today, twoSteps));
    QVERIFY(!QFile::exists(shop.path(u"missing.cdb"_s)));
}

QTEST_MAIN(TestMigration)
#include "tst_migration.moc"

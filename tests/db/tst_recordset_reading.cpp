#include "db/employees.h"
#include "db/recordset.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace
{

// Pages of ten rows, then of twenty, however fast the machine is.
constexpr db::Pace slow{10, 20, std::chrono::minutes(1)};

} // namespace

// Record sets of many rows: what is asked of them while they are still being read.
class TestRecordsetReading : public QObject
{
    Q_OBJECT

private slots:
    void manyRowsAreReadInBlocks();
    void opensOnItsFirstPage();
    void opensOnItsLastPage();
    void movesWhileReading_data();
    void movesWhileReading();
    void editsWhileReading();
    void removesAndAddsWhileReading();
    void rereadsWhileReading();
    void lockedWhileReading();
    void closedWhileReading();
};

// Walking up and down a list longer than the block cache shows every row as the file has it.
void TestRecordsetReading::manyRowsAreReadInBlocks()
{
    FreshShop shop;
    fillEmployees(shop, 20000);
    db::Recordset rows(shop.connection);
    QVERIFY(rows.open({.table = u"社員"_s}));
    QVERIFY(rows.readAll());
    QCOMPARE(rows.count(), 20000);
    for (const int row : {0, 19999, 10000, 63, 64, 128, 0})
        QCOMPARE(rows.index(row, 1).data().toString(), u"社員%1"_s.arg(row + 1));
    for (int row = 0; row < 20000; row += 37)
        QCOMPARE(rows.index(row, 1).data().toString(), u"社員%1"_s.arg(row + 1));
}

// --- While the keys are still being read ---

void TestRecordsetReading::opensOnItsFirstPage()
{
    FreshShop shop;
    fillEmployees(shop, 500);
    db::Recordset rows(shop.connection, nullptr, slow);
    const QAbstractItemModelTester tester(&rows);
    QVERIFY(rows.open({.table = u"社員"_s}));
    QCOMPARE(rows.count(), 10);
    QCOMPARE(rows.text(u"社員名"_s), u"社員1"_s);
    QSignalSpy moves(&rows, &db::Recordset::currentRowChanged);
    QTRY_VERIFY(rows.isComplete());
    QCOMPARE(rows.count(), 500);
    QCOMPARE(rows.rowCount(), 500);
    QCOMPARE(moves.count(), 0);
    QCOMPARE(rows.index(499, 1).data().toString(), u"社員500"_s);
}

void TestRecordsetReading::opensOnItsLastPage()
{
    FreshShop shop;
    fillEmployees(shop, 500);
    db::Recordset rows(shop.connection, nullptr, slow);
    const QAbstractItemModelTester tester(&rows);
    const db::Query employees{.table = u"社員"_s};
    QSignalSpy moves(&rows, &db::Recordset::currentRowChanged);
    QVERIFY(rows.open(employees, db::KeySet::End::Last));
    QCOMPARE(rows.count(), 10);
    QCOMPARE(rows.text(u"社員名"_s), u"社員500"_s);
    QCOMPARE(moves.count(), 1);
    QTRY_VERIFY(rows.isComplete());
    QCOMPARE(rows.currentRow(), 499);
    QVERIFY(rows.open({.table = u"社員"_s, .where = u"社員ID < 1"_s}, db::KeySet::End::Last));
    QCOMPARE(rows.currentRow(), -1);
}

void TestRecordsetReading::movesWhileReading_data()
{
    using Move = std::function<base::Status(db::Recordset &)>;
    QTest::addColumn<QList<Move>>("moves");
    QTest::addColumn<qint64>("key");

    const Move first = &db::Recordset::moveFirst;
    const Move last = &db::Recordset::moveLast;
    const auto to = [](qint64 key) -> Move {
        return [key](db::Recordset &rows) { return rows.moveToKey(key); };
    };
    const auto down = [](int by) -> Move {
        return [by](db::Recordset &rows) {
            rows.reach(rows.currentRow() + by);
            return rows.moveTo(rows.currentRow() + by);
        };
    };
    QTest::newRow("end") << QList<Move>{last} << qint64(500);
    QTest::newRow("end and home") << QList<Move>{last, first} << qint64(1);
    QTest::newRow("a key far away") << QList<Move>{to(250)} << qint64(250);
    QTest::newRow("a key, the end, a key") << QList<Move>{to(250), last, to(9)} << qint64(9);
    QTest::newRow("a key that is not there") << QList<Move>{to(700)} << qint64(1);
    QTest::newRow("down a page") << QList<Move>{down(30)} << qint64(31);
    QTest::newRow("a key and up two pages") << QList<Move>{to(250), down(-30), down(-30)} << qint64(190);
    QTest::newRow("up from the end") << QList<Move>{last, down(-45)} << qint64(455);
    QTest::newRow("down to the last row") << QList<Move>{to(490), down(10)} << qint64(500);
}

void TestRecordsetReading::movesWhileReading()
{
    QFETCH(QList<std::function<base::Status(db::Recordset &)>>, moves);
    QFETCH(qint64, key);
    FreshShop shop;
    fillEmployees(shop, 500);
    db::Recordset rows(shop.connection, nullptr, slow);
    const QAbstractItemModelTester tester(&rows);
    QVERIFY(rows.open({.table = u"社員"_s}));
    for (const auto &move : moves)
        QVERIFY(move(rows));
    QCOMPARE(rows.currentKey(), key);
    QCOMPARE(rows.text(u"社員名"_s), u"社員%1"_s.arg(key));
    QVERIFY(!rows.isComplete());
    QTRY_VERIFY(rows.isComplete());
    QCOMPARE(rows.count(), 500);
    QCOMPARE(rows.currentRow(), int(key) - 1);
    QCOMPARE(rows.currentKey(), key);
    QCOMPARE(rows.index(rows.currentRow(), 0).data(Qt::EditRole).toLongLong(), key);
}

// Rows that come in above it change a row's number, never what is edited in it or where that goes.
void TestRecordsetReading::editsWhileReading()
{
    FreshShop shop;
    fillEmployees(shop, 500);
    db::Recordset rows(shop.connection, nullptr, slow);
    QVERIFY(rows.open({.table = u"社員"_s}));
    QVERIFY(rows.moveLast());
    rows.setValue(u"社員名"_s, u"新"_s);
    QTRY_VERIFY(rows.isComplete());
    QVERIFY(rows.isDirty());
    QCOMPARE(rows.index(499, 1).data().toString(), u"新"_s);
    QVERIFY(rows.moveFirst());
    QCOMPARE(shop.rows(u"SELECT 社員ID FROM 社員 WHERE 社員名 = '新'"_s), QStringList{u"500"_s});
}

void TestRecordsetReading::removesAndAddsWhileReading()
{
    FreshShop shop;
    fillEmployees(shop, 100);
    db::Recordset rows(shop.connection, nullptr, slow);
    const QAbstractItemModelTester tester(&rows);
    QVERIFY(rows.open({.table = u"社員"_s}));
    QVERIFY(rows.moveTo(9)); // the last one known
    QVERIFY(rows.remove());
    QCOMPARE(rows.text(u"社員名"_s), u"社員11"_s);
    QVERIFY(rows.moveToKey(60));
    QVERIFY(rows.remove());
    QCOMPARE(rows.text(u"社員名"_s), u"社員61"_s);
    QCOMPARE(*rows.add({{u"社員名"_s, u"新"_s}}), 101);
    QCOMPARE(rows.text(u"社員名"_s), u"新"_s);
    QCOMPARE(rows.currentRow(), rows.count() - 1);
    QTRY_VERIFY(rows.isComplete());
    QCOMPARE(rows.count(), 99);
    QCOMPARE(rows.currentRow(), 98);
    QCOMPARE(rows.keyAt(9), 11);
    QCOMPARE(rows.keyAt(58), 61);
}

void TestRecordsetReading::rereadsWhileReading()
{
    FreshShop shop;
    fillEmployees(shop, 500);
    db::Recordset rows(shop.connection, nullptr, slow);
    QVERIFY(rows.open({.table = u"社員"_s}));
    QVERIFY(rows.moveToKey(300));
    QVERIFY(rows.requery());
    QCOMPARE(rows.currentKey(), 300);
    shop.run(u"DELETE FROM 社員 WHERE 社員ID = 300"_s);
    QVERIFY(rows.requery());
    QCOMPARE(rows.currentKey(), 1);
    shop.run(u"DELETE FROM 社員"_s);
    QTRY_VERIFY(rows.isComplete());
    QVERIFY(rows.requery());
    QCOMPARE(rows.currentRow(), -1);
}

// Nobody waits for what is read in the background, and it goes on by itself.
void TestRecordsetReading::lockedWhileReading()
{
    FreshShop shop;
    fillEmployees(shop, 500);
    db::Recordset rows(shop.connection, nullptr, slow);
    QVERIFY(rows.open({.table = u"社員"_s}));
    sqlite3 *other = nullptr;
    QCOMPARE(sqlite3_open(shop.path(u"shop.cdb"_s).toUtf8().constData(), &other), SQLITE_OK);
    QCOMPARE(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    QElapsedTimer clock;
    clock.start();
    QCoreApplication::processEvents();
    QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(rows.count(), 10);
    QVERIFY(!rows.isComplete());
    QCOMPARE(sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    QTRY_VERIFY(rows.isComplete());
    QCOMPARE(rows.count(), 500);
    // Others are waited for again by what a clerk has asked for.
    QCOMPARE(shop.value(u"PRAGMA busy_timeout"_s).toInt(), 5000);
    sqlite3_close(other);
}

void TestRecordsetReading::closedWhileReading()
{
    FreshShop shop;
    fillEmployees(shop, 500);
    auto gone = std::make_unique<db::Recordset>(shop.connection, nullptr, slow);
    QVERIFY(gone->open({.table = u"社員"_s}));
    gone.reset();
    db::Recordset closed(shop.connection, nullptr, slow);
    QVERIFY(closed.open({.table = u"社員"_s}));
    closed.close();
    db::Recordset left(shop.connection, nullptr, slow);
    QVERIFY(left.open({.table = u"社員"_s}));
    shop.connection.close();
    QCoreApplication::processEvents();
    QCOMPARE(closed.count(), 0);
    QVERIFY(!left.readAll());
    QCOMPARE(left.count(), 10);
}

QTEST_GUILESS_MAIN(TestRecordsetReading)
#include "tst_recordset_reading.moc"

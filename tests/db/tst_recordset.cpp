#include "support/fresh_shop.h"

#include "db/recordset.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

class TestRecordset : public QObject
{
    Q_OBJECT

private slots:
    void keysComeInTheStatementsOrder();
    void editsAreHeldBackAndSeen();
    void leavingARowSavesIt();
    void refusedSaverKeepsTheRow();
    void failedUpdateKeepsTheEdits();
    void addAndRemoveKeepACurrentRow();
    void linesWithoutAKeyStayInOrder();
    void numbersFromText();
    void rowsThatAnotherProgramDeleted();
    void rowsThatAnotherProgramChanged_data();
    void rowsThatAnotherProgramChanged();
    void aKeyGivenAgainIsAnotherRow();
    void unreadRowsAreNotSaved();
    void failedOpenKeepsWhatWasShown();
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

private:
    // Pages of ten rows, then of twenty, however fast the machine is.
    static constexpr db::Pace slow{10, 20, std::chrono::minutes(1)};

    static void fill(FreshShop &shop, int count);
};

void TestRecordset::fill(FreshShop &shop, int count)
{
    shop.run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) "
             "INSERT INTO 社員 (社員ID, 社員名, 内線番号) SELECT i, '社員' || i, NULL FROM n"_s,
             {count});
}

void TestRecordset::keysComeInTheStatementsOrder()
{
    FreshShop shop;
    fill(shop, 500);
    db::Recordset rows(shop.connection);
    const QAbstractItemModelTester tester(&rows);
    QVERIFY(rows.open({.columns = u"社員名, 社員ID"_s,
                       .table = u"社員"_s,
                       .where = u"社員ID > ?"_s,
                       .order = {u"社員ID DESC"_s},
                       .values = {100}}));
    QCOMPARE(rows.count(), 400);
    QCOMPARE(rows.currentKey(), 500);
    QCOMPARE(rows.columns(), (QStringList{u"社員名"_s, u"社員ID"_s}));
    QVERIFY(rows.moveLast());
    QCOMPARE(rows.text(u"社員名"_s), u"社員101"_s);
    QCOMPARE(rows.index(0, 0).data().toString(), u"社員500"_s);
    QCOMPARE(rows.index(399, 1).data().toString(), u"101"_s);
}

void TestRecordset::editsAreHeldBackAndSeen()
{
    FreshShop shop;
    fill(shop, 3);
    db::Recordset rows(shop.connection);
    QVERIFY(rows.open({.table = u"社員"_s}));
    rows.setValue(u"社員名"_s, u"新"_s);
    QVERIFY(rows.isDirty());
    QCOMPARE(rows.index(0, 1).data().toString(), u"新"_s);
    QCOMPARE(shop.value(u"SELECT 社員名 FROM 社員 WHERE 社員ID = 1"_s).toString(), u"社員1"_s);
    rows.setValue(u"社員名"_s, u"社員1"_s);
    QVERIFY(!rows.isDirty());
    rows.setValue(u"内線番号"_s, u""_s); // was NULL: the same to the clerk
    QVERIFY(!rows.isDirty());
    rows.setValue(u"社員名"_s, u"別"_s);
    rows.revert();
    QCOMPARE(rows.text(u"社員名"_s), u"社員1"_s);
}

void TestRecordset::leavingARowSavesIt()
{
    FreshShop shop;
    fill(shop, 3);
    db::Recordset rows(shop.connection);
    QVERIFY(rows.open({.table = u"社員"_s}));
    rows.setValue(u"社員名"_s, u"新"_s);
    QVERIFY(rows.moveTo(2));
    QCOMPARE(rows.currentRow(), 2);
    QVERIFY(!rows.isDirty());
    QCOMPARE(shop.value(u"SELECT 社員名 FROM 社員 WHERE 社員ID = 1"_s).toString(), u"新"_s);
}

void TestRecordset::refusedSaverKeepsTheRow()
{
    FreshShop shop;
    fill(shop, 3);
    db::Recordset rows(shop.connection);
    QVERIFY(rows.open({.table = u"社員"_s}));
    rows.setSaver([] { return base::Error{u"だめ"_s}; });
    rows.setValue(u"社員名"_s, u"新"_s);
    const base::Status moved = rows.moveTo(2);
    QCOMPARE(moved.error().text, u"だめ"_s);
    QCOMPARE(rows.currentRow(), 0);
    QCOMPARE(rows.text(u"社員名"_s), u"新"_s);
}

void TestRecordset::failedUpdateKeepsTheEdits()
{
    FreshShop shop;
    fill(shop, 1);
    db::Recordset rows(shop.connection);
    QVERIFY(rows.open({.table = u"社員"_s}));
    rows.setValue(u"社員名"_s, u"新"_s);
    shop.run(u"PRAGMA query_only = ON"_s);
    QVERIFY(!rows.update());
    QVERIFY(rows.isDirty());
    QVERIFY(!rows.add());
    QVERIFY(!rows.remove());
    QCOMPARE(rows.count(), 1);
    shop.run(u"PRAGMA query_only = OFF"_s);
    QVERIFY(rows.update());
    QCOMPARE(shop.value(u"SELECT 社員名 FROM 社員"_s).toString(), u"新"_s);
}

void TestRecordset::addAndRemoveKeepACurrentRow()
{
    FreshShop shop;
    db::Recordset rows(shop.connection);
    const QAbstractItemModelTester tester(&rows);
    QVERIFY(rows.open({.table = u"単位"_s}));
    QCOMPARE(rows.currentRow(), -1);
    for (qint64 key = 1; key <= 130; ++key)
        QCOMPARE(*rows.add({{u"単位"_s, u"箱%1"_s.arg(key)}}), key);
    QCOMPARE(rows.text(u"単位"_s), u"箱130"_s);
    QVERIFY(rows.moveTo(63));
    QVERIFY(rows.remove());
    QCOMPARE(rows.text(u"単位"_s), u"箱65"_s);
    QVERIFY(rows.moveLast());
    QVERIFY(rows.remove());
    QCOMPARE(rows.text(u"単位"_s), u"箱129"_s);
    while (!rows.isEmpty())
        QVERIFY(rows.remove());
    QCOMPARE(rows.currentRow(), -1);
    QCOMPARE(*rows.add(), 1);
}

void TestRecordset::linesWithoutAKeyStayInOrder()
{
    FreshShop shop;
    db::Recordset lines(shop.connection);
    QVERIFY(lines.open({.columns = u"ID, 商品名, 規格, 数量, 単位, 単価, 金額"_s,
                        .table = u"入出庫サブ"_s,
                        .where = u"ID = ?"_s,
                        .values = {7}}));
    for (const QString &name : {u"りんご"_s, u"みかん"_s, u"かき"_s})
        QVERIFY(lines.append({{u"ID"_s, 7}, {u"商品名"_s, name}, {u"金額"_s, 1000.0}}));
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名) VALUES (8, 'ほか')"_s);
    QVERIFY(lines.requery());
    QCOMPARE(lines.count(), 3);
    QVERIFY(lines.moveLast());
    QCOMPARE(lines.text(u"商品名"_s), u"かき"_s);
    QVERIFY(lines.remove());
    QCOMPARE(shop.rows(u"SELECT 商品名 FROM 入出庫サブ ORDER BY rowid"_s),
             (QStringList{u"りんご"_s, u"みかん"_s, u"ほか"_s}));
}

void TestRecordset::numbersFromText()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID) VALUES (1)"_s);
    db::Recordset rows(shop.connection);
    QVERIFY(rows.open({.table = u"納品先"_s}));
    rows.setValue(u"締め日"_s, u"１５"_s);
    rows.setValue(u"区分ID"_s, u"たぶん"_s);
    rows.setValue(u"コード"_s, u"007"_s);
    QVERIFY(rows.update());
    QCOMPARE(shop.rows(u"SELECT 締め日, typeof(締め日), 区分ID, コード, typeof(コード) FROM 納品先"_s),
             QStringList{u"15|integer|-|007|text"_s});
}

void TestRecordset::rowsThatAnotherProgramDeleted()
{
    FreshShop shop;
    fill(shop, 3);
    db::Recordset rows(shop.connection);
    QVERIFY(rows.open({.table = u"社員"_s}));
    rows.setValue(u"社員名"_s, u"新"_s);
    shop.run(u"DELETE FROM 社員 WHERE 社員ID = 1"_s);
    const base::Status saved = rows.update();
    QVERIFY(!saved);
    QVERIFY2(saved.error().text.contains(u"削除された"_s), qPrintable(saved.error().text));
    QCOMPARE(rows.text(u"社員名"_s), u"新"_s);
}

void TestRecordset::rowsThatAnotherProgramChanged_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<bool>("isConflict");
    const auto row = [](const char *name, const QString &change, bool isConflict) {
        QTest::newRow(name) << change << isConflict;
    };
    row("this program, another column", u"UPDATE 納品先 SET TEL1 = '2', 版 = 99"_s, true);
    row("this program, back and forth", u"UPDATE 納品先 SET 版 = 99"_s, true);
    row("a companion program, the edited column", u"UPDATE 納品先 SET 納品先名1 = '他'"_s, true);
    row("a companion program, another column", u"UPDATE 納品先 SET メモ = NULL"_s, true);
    row("a sale's stamp", u"UPDATE 納品先 SET 更新日 = '2026-04-02'"_s, false);
    row("another row", u"UPDATE 納品先 SET TEL1 = '2', 版 = 99 WHERE 納品先ID = 2"_s, false);
}

void TestRecordset::rowsThatAnotherProgramChanged()
{
    QFETCH(QString, change);
    QFETCH(bool, isConflict);
    FreshShop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, TEL1, メモ, 更新日, 版) VALUES "
             "(1, '山田', '1', 'm', '2026-04-01', 7), (2, '林', '1', NULL, NULL, NULL)"_s);
    db::Recordset rows(shop.connection);
    QVERIFY(rows.open({.table = u"納品先"_s}));
    rows.setValue(u"納品先名1"_s, u"私"_s);
    db::Connection other;
    QVERIFY(other.open(shop.path(u"shop.cdb"_s)));
    QVERIFY(other.execute(change + (change.contains(u" WHERE "_s) ? QString() : u" WHERE 納品先ID = 1"_s)));
    const base::Status saved = rows.update();
    QCOMPARE(bool(saved), !isConflict);
    if (isConflict) {
        QVERIFY(saved.error().changed);
        QCOMPARE(rows.text(u"納品先名1"_s), u"私"_s); // still here
        const base::Status removed = rows.remove();
        QVERIFY(!removed && removed.error().changed);
        // The row is read anew now, and what was typed lies over it.
        QVERIFY(rows.update());
    }
    QCOMPARE(shop.value(u"SELECT 納品先名1 FROM 納品先 WHERE 納品先ID = 1"_s).toString(), u"私"_s);
    // Each saving gives the row the next number of the file, and the next one may follow.
    QCOMPARE(shop.value(u"SELECT 版 FROM 納品先 WHERE 納品先ID = 1"_s),
             shop.value(u"SELECT 最終 FROM 版数"_s));
    rows.setValue(u"納品先名1"_s, u"再び"_s);
    QVERIFY(rows.update());
}

// The row of another program that has the deleted one's key, and even its contents, is not the one that is
// edited.
void TestRecordset::aKeyGivenAgainIsAnotherRow()
{
    FreshShop shop;
    db::Recordset mine(shop.connection);
    db::Connection other;
    QVERIFY(other.open(shop.path(u"shop.cdb"_s)));
    db::Recordset theirs(other);
    QVERIFY(mine.open({.table = u"社員"_s}) && mine.add());
    mine.setValue(u"社員名"_s, u"木村"_s);
    QVERIFY(theirs.open({.table = u"社員"_s}));
    QVERIFY(theirs.remove());
    QCOMPARE(*theirs.add(), 1);
    const base::Status saved = mine.update();
    QVERIFY(!saved && saved.error().changed);
    QVERIFY(!mine.remove());
    QCOMPARE(shop.rows(u"SELECT 社員名 FROM 社員"_s), QStringList{u"-"_s});
}

// What was made out of a row that only seems empty must not get into the file.
void TestRecordset::unreadRowsAreNotSaved()
{
    FreshShop shop;
    fill(shop, 3);
    db::Recordset rows(shop.connection);
    QVERIFY(rows.open({.table = u"社員"_s}));
    QVERIFY(shop.connection.select(u"PRAGMA busy_timeout = 20"_s));
    sqlite3 *other = nullptr;
    QCOMPARE(sqlite3_open(shop.path(u"shop.cdb"_s).toUtf8().constData(), &other), SQLITE_OK);
    QCOMPARE(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    QCOMPARE(rows.text(u"社員名"_s), QString());
    QCOMPARE(sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(other);

    rows.setValue(u"内線番号"_s, rows.text(u"社員名"_s) + u'様');
    QVERIFY(!rows.update());
    QCOMPARE(rows.text(u"社員名"_s), u"社員1"_s);
    rows.setValue(u"内線番号"_s, rows.text(u"社員名"_s) + u'様');
    QVERIFY(rows.update());
    QCOMPARE(shop.value(u"SELECT 内線番号 FROM 社員 WHERE 社員ID = 1"_s).toString(), u"社員1様"_s);
}

void TestRecordset::failedOpenKeepsWhatWasShown()
{
    FreshShop shop;
    fill(shop, 3);
    db::Recordset rows(shop.connection);
    QVERIFY(rows.open({.table = u"社員"_s}));
    QVERIFY(!rows.open({.table = u"無い表"_s}));
    QVERIFY(!rows.open({.columns = u"無い項目"_s, .table = u"社員"_s}));
    QCOMPARE(rows.count(), 3);
    QCOMPARE(rows.text(u"社員名"_s), u"社員1"_s);
}

// Walking up and down a list longer than the block cache shows every row as the file has it.
void TestRecordset::manyRowsAreReadInBlocks()
{
    FreshShop shop;
    fill(shop, 20000);
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

void TestRecordset::opensOnItsFirstPage()
{
    FreshShop shop;
    fill(shop, 500);
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

void TestRecordset::opensOnItsLastPage()
{
    FreshShop shop;
    fill(shop, 500);
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

void TestRecordset::movesWhileReading_data()
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

void TestRecordset::movesWhileReading()
{
    QFETCH(QList<std::function<base::Status(db::Recordset &)>>, moves);
    QFETCH(qint64, key);
    FreshShop shop;
    fill(shop, 500);
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
void TestRecordset::editsWhileReading()
{
    FreshShop shop;
    fill(shop, 500);
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

void TestRecordset::removesAndAddsWhileReading()
{
    FreshShop shop;
    fill(shop, 100);
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

void TestRecordset::rereadsWhileReading()
{
    FreshShop shop;
    fill(shop, 500);
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
void TestRecordset::lockedWhileReading()
{
    FreshShop shop;
    fill(shop, 500);
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

void TestRecordset::closedWhileReading()
{
    FreshShop shop;
    fill(shop, 500);
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

QTEST_GUILESS_MAIN(TestRecordset)
#include "tst_recordset.moc"

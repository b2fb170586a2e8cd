#include "db/employees.h"
#include "db/recordset.h"

#include <QAbstractItemModelTester>
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
    void addingEndsARowThatWasBegun();
    void numbersFromText();
    void rowsThatAnotherProgramDeleted();
    void rowsThatAnotherProgramChanged_data();
    void rowsThatAnotherProgramChanged();
    void aKeyGivenAgainIsAnotherRow();
    void unreadRowsAreNotSaved();
    void failedOpenKeepsWhatWasShown();
};

void TestRecordset::keysComeInTheStatementsOrder()
{
    FreshShop shop;
    fillEmployees(shop, 500);
    db::Recordset rows(shop.connection);
    const QAbstractItemModelTester tester(&rows);
    QVERIFY(rows.open({.columns = u"社員名, 社員ID"_s,
                       .table = u"社員"_s,
                       .where = u"社員ID > ?"_s,
                       .order = {u"社員ID DESC"_s},
                       .values = {100}}));
    QTRY_COMPARE(rows.count(), 400); // what takes long comes in parts
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
    fillEmployees(shop, 3);
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
    fillEmployees(shop, 3);
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
    fillEmployees(shop, 3);
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
    fillEmployees(shop, 1);
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
    for (const QString &name : {u"りんご"_s, u"みかん"_s, u"かき"_s}) {
        QVERIFY(lines.beginRow({{u"ID"_s, 7}, {u"金額"_s, 1000.0}}));
        lines.setValue(u"商品名"_s, name);
        QVERIFY(lines.update());
    }
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名) VALUES (8, 'ほか')"_s);
    QVERIFY(lines.requery());
    QCOMPARE(lines.count(), 3);
    QVERIFY(lines.moveLast());
    QCOMPARE(lines.text(u"商品名"_s), u"かき"_s);
    QVERIFY(lines.remove());
    QCOMPARE(shop.rows(u"SELECT 商品名 FROM 入出庫サブ ORDER BY rowid"_s),
             (QStringList{u"りんご"_s, u"みかん"_s, u"ほか"_s}));
}

// A row that was begun stands last; one that is added while it does takes its place.
void TestRecordset::addingEndsARowThatWasBegun()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (1, '個'), (2, '本')"_s);
    db::Recordset rows(shop.connection);
    QVERIFY(rows.open({.table = u"単位"_s}));
    QVERIFY(rows.beginRow({}));
    rows.setValue(u"単位"_s, u"袋"_s);
    QCOMPARE(*rows.add({{u"単位"_s, u"箱"_s}}), 3);
    QVERIFY(!rows.isNewRow() && !rows.isDirty());
    QCOMPARE(rows.currentKey(), 3);
    QVERIFY(rows.moveFirst());
    QCOMPARE(rows.count(), 3);
    QCOMPARE(rows.keyAt(2), 3);
    QVERIFY(rows.beginRow({}));
    rows.setValue(u"単位"_s, u"枚"_s);
    QVERIFY(rows.moveFirst());
    QCOMPARE(shop.rows(u"SELECT 単位ID, 単位 FROM 単位 ORDER BY 単位ID"_s),
             QStringList({u"1|個"_s, u"2|本"_s, u"3|箱"_s, u"4|枚"_s}));
    QCOMPARE(rows.count(), 4);
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
    fillEmployees(shop, 3);
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
    fillEmployees(shop, 3);
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
    fillEmployees(shop, 3);
    db::Recordset rows(shop.connection);
    QVERIFY(rows.open({.table = u"社員"_s}));
    QVERIFY(!rows.open({.table = u"無い表"_s}));
    QVERIFY(!rows.open({.columns = u"無い項目"_s, .table = u"社員"_s}));
    QCOMPARE(rows.count(), 3);
    QCOMPARE(rows.text(u"社員名"_s), u"社員1"_s);
}

QTEST_GUILESS_MAIN(TestRecordset)
#include "tst_recordset.moc"

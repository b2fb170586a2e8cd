#include "support/fresh_shop.h"

#include "db/key_set.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using db::KeySet;

// Whatever the order, the pace and what other programs do meanwhile: the keys that come slice by slice are
// those that one statement would have given.
class TestKeySet : public QObject
{
    Q_OBJECT

private slots:
    void slicesMakeTheWhole_data();
    void slicesMakeTheWhole();
    void changesBetweenSlices_data();
    void changesBetweenSlices();
    void fewAmongMany();
    void failuresInTheMiddle();

private:
    static constexpr db::Pace small{7, 5, std::chrono::minutes(1)};

    static void fill(FreshShop &shop);
    static bool readOn(KeySet &keys, KeySet::End end);
    static std::vector<qint64> all(KeySet &keys);
};

// Dates and readings come again and again, and are often missing; a category is now and then a text.
void TestKeySet::fill(FreshShop &shop)
{
    shop.run(
        u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 120) "
        "INSERT INTO 納品先 (納品先ID, 更新日, フリガナ, 納品先名キー, 区分ID) "
        "SELECT i, CASE i % 4 WHEN 0 THEN NULL ELSE '2026-04-0' || (i % 4) END, "
        "CASE WHEN i % 7 < 2 THEN NULL WHEN i % 7 = 3 THEN '' ELSE 'ｱ' || (i % 3) END, "
        "CASE WHEN i % 5 = 0 THEN NULL ELSE '山田' || (i % 11) END, "
        "CASE WHEN i % 9 = 0 THEN '不明' WHEN i % 9 = 1 THEN NULL WHEN i % 9 = 2 THEN 2.5 ELSE i % 9 END "
        "FROM n"_s);
}

bool TestKeySet::readOn(KeySet &keys, KeySet::End end)
{
    const auto found = keys.next(end);
    if (found)
        keys.take(end, *found);
    return bool(found);
}

std::vector<qint64> TestKeySet::all(KeySet &keys)
{
    bool upwards = false;
    while (!keys.isComplete()) {
        if (!readOn(keys, upwards ? KeySet::End::First : KeySet::End::Last))
            return {};
        upwards = !upwards;
    }
    std::vector<qint64> found;
    for (int row = 0; row < keys.count(); ++row)
        found.push_back(keys.at(row));
    return found;
}

void TestKeySet::slicesMakeTheWhole_data()
{
    QTest::addColumn<QString>("index"); // what makes the order one that can be followed
    QTest::addColumn<QStringList>("order");
    QTest::addColumn<QString>("where");

    const QStringList registersOrder{u"更新日 DESC"_s, u"フリガナ"_s, u"納品先名キー"_s};
    QTest::newRow("keys") << QString() << QStringList() << QString();
    QTest::newRow("keys down") << QString() << QStringList{u"納品先ID DESC"_s} << QString();
    QTest::newRow("register") << QString() << registersOrder << QString();
    QTest::newRow("register, searched") << QString() << registersOrder << u"納品先名キー LIKE '%田1%'"_s;
    QTest::newRow("register, every other") << QString() << registersOrder << u"納品先ID % 2"_s;
    QTest::newRow("a condition with OR")
        << QString() << registersOrder << u"納品先ID < 9 OR フリガナ IS NULL"_s;
    QTest::newRow("by an index on the condition") << u"区分ID"_s << registersOrder << u"区分ID = 4"_s;
    QTest::newRow("up and down") << u"更新日, フリガナ DESC"_s
                                 << QStringList{u"更新日 ASC"_s, u"フリガナ DESC"_s} << QString();
    QTest::newRow("down and down") << u"更新日 DESC, フリガナ DESC, 納品先ID DESC"_s
                                   << QStringList{u"更新日 DESC"_s, u"フリガナ DESC"_s, u"納品先ID DESC"_s}
                                   << u"納品先ID > 3"_s;
    QTest::newRow("texts among numbers") << u"区分ID"_s << QStringList{u"区分ID"_s} << QString();
    QTest::newRow("texts among numbers, down")
        << u"区分ID DESC"_s << QStringList{u"区分ID DESC"_s} << QString();
    QTest::newRow("an expression with an index")
        << u"replace(更新日, '-', '/')"_s << QStringList{u"replace(更新日, '-', '/')"_s} << QString();
    QTest::newRow("an expression without")
        << QString() << QStringList{u"replace(更新日, '-', '/') DESC"_s} << u"納品先ID > 3"_s;
    QTest::newRow("nothing found") << QString() << registersOrder << u"フリガナ = '無い'"_s;
    QTest::newRow("one found") << QString() << registersOrder << u"納品先ID + 0 = 60"_s;
}

void TestKeySet::slicesMakeTheWhole()
{
    QFETCH(QString, index);
    QFETCH(QStringList, order);
    QFETCH(QString, where);
    FreshShop shop;
    fill(shop);
    if (!index.isEmpty())
        shop.run(u"CREATE INDEX 試し ON 納品先 ("_s + index + u')');
    const db::Query query{.table = u"納品先"_s, .where = where, .order = order};
    const auto expected = shop.connection.integers(query.selecting(query.key()));
    QVERIFY(expected);

    for (const KeySet::End end : {KeySet::End::First, KeySet::End::Last}) {
        KeySet keys(shop.connection, small);
        QVERIFY(keys.open(query, end));
        QVERIFY(keys.hasEnd(end));
        QVERIFY(keys.count() >= std::min<int>(2, int(expected->size())));
        QCOMPARE(all(keys), *expected);
    }
    for (const qint64 key : {qint64(1), qint64(36), qint64(60), qint64(120)}) {
        KeySet keys(shop.connection, small);
        const auto found = keys.openAround(query, key);
        QVERIFY(found);
        QCOMPARE(*found, std::ranges::count(*expected, key) == 1);
        if (*found)
            QCOMPARE(all(keys), *expected);
    }
}

void TestKeySet::changesBetweenSlices_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("found"); // after the first seven: 1 to 7

    QTest::newRow("edge deleted") << u"DELETE FROM 社員 WHERE 社員ID IN (7, 8)"_s
                                  << u"9 10 11 12 13 14 15 16"_s;
    QTest::newRow("edge moved on") << u"UPDATE 社員 SET 社員名 = '12x' WHERE 社員ID = 7"_s
                                   << u"8 9 10 11 12 13 14 15 16"_s;
    QTest::newRow("edge moved back") << u"UPDATE 社員 SET 社員名 = '00' WHERE 社員ID = 7"_s
                                     << u"8 9 10 11 12 13 14 15 16"_s;
    QTest::newRow("edge without a name")
        << u"UPDATE 社員 SET 社員名 = NULL WHERE 社員ID = 7"_s << u"8 9 10 11 12 13 14 15 16"_s;
    QTest::newRow("one known moved on twice")
        << u"UPDATE 社員 SET 社員名 = '99' WHERE 社員ID IN (2, 3)"_s << u"8 9 10 11 12 13 14 15 16"_s;
    QTest::newRow("one to come moved on")
        << u"UPDATE 社員 SET 社員名 = '99' WHERE 社員ID = 9"_s << u"8 10 11 12 13 14 15 16 9"_s;
    QTest::newRow("added") << u"INSERT INTO 社員 (社員ID, 社員名) VALUES (90, '09x'), (91, '99')"_s
                           << u"8 9 90 10 11 12 13 14 15 16 91"_s;
    QTest::newRow("same name as the edge")
        << u"INSERT INTO 社員 (社員ID, 社員名) VALUES (90, '07')"_s << u"90 8 9 10 11 12 13 14 15 16"_s;
    QTest::newRow("emptied") << u"DELETE FROM 社員"_s << QString();
}

void TestKeySet::changesBetweenSlices()
{
    QFETCH(QString, change);
    QFETCH(QString, found);
    FreshShop shop;
    shop.run(u"CREATE INDEX 試し ON 社員 (社員名)"_s);
    shop.run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 16) "
             "INSERT INTO 社員 (社員ID, 社員名) SELECT i, printf('%02d', i) FROM n"_s);
    KeySet keys(shop.connection, small);
    QVERIFY(keys.open({.table = u"社員"_s, .order = {u"社員名"_s}}, KeySet::End::First));
    QCOMPARE(keys.count(), 7);
    db::Connection other;
    QVERIFY(other.open(shop.connection.fileName()));
    QVERIFY(other.execute(change));

    const std::vector<qint64> read = all(keys);
    QStringList later;
    for (std::size_t row = 7; row < read.size(); ++row)
        later << QString::number(read[row]);
    QCOMPARE(later.join(u' '), found);
}

// However rare they are, two rows or none are known from the start, and reading is broken off between them.
void TestKeySet::fewAmongMany()
{
    FreshShop shop;
    shop.run(
        u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20000) "
        "INSERT INTO 社員 (社員ID, 社員名) SELECT i, CASE WHEN i % 6000 = 0 THEN '佐藤' ELSE '鈴木' END FROM n"_s);
    const db::Query query{.table = u"社員"_s, .where = u"社員名 LIKE ?"_s, .values = {u"%佐%"_s}};
    KeySet keys(shop.connection, {512, 20000, std::chrono::microseconds(1)});
    QVERIFY(keys.open(query, KeySet::End::First));
    QVERIFY(keys.count() >= 2);
    QVERIFY(!keys.isComplete());
    int slices = 0;
    for (; !keys.isComplete(); ++slices)
        QVERIFY(readOn(keys, KeySet::End::Last));
    QVERIFY2(slices > 10, qPrintable(QString::number(slices)));
    QCOMPARE(all(keys), (std::vector<qint64>{6000, 12000, 18000}));
    QVERIFY(keys.open({.table = u"社員"_s, .where = u"社員名 = '無い'"_s}, KeySet::End::Last));
    QVERIFY(keys.isComplete());
    QCOMPARE(keys.count(), 0);
}

void TestKeySet::failuresInTheMiddle()
{
    FreshShop shop;
    fill(shop);
    KeySet keys(shop.connection, small);
    QVERIFY(!keys.open({.table = u"無い表"_s}, KeySet::End::First));
    QVERIFY(!keys.open({.table = u"納品先"_s, .where = u"無い = 1"_s}, KeySet::End::First));
    QVERIFY(keys.open({.table = u"納品先"_s}, KeySet::End::First));
    shop.run(u"ALTER TABLE 納品先 RENAME TO 別の表"_s);
    QVERIFY(!keys.next(KeySet::End::Last));
    shop.run(u"ALTER TABLE 別の表 RENAME TO 納品先"_s);
    QCOMPARE(all(keys).size(), 120U);
    shop.connection.close();
    QVERIFY(!keys.open({.table = u"納品先"_s}, KeySet::End::First));
}

QTEST_GUILESS_MAIN(TestKeySet)
#include "tst_key_set.moc"

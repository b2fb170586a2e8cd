// Damage of a few bytes, and what others did to the file: it costs what it hit, and nothing beside it.
#include "db/care/salvage_shop.h"
#include "db/migrations.h"
#include "support/earlier_version.h"

#include <QTest>
#include <QtEndian>

#include <algorithm>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype pageSize = 4096;

// Where the cell \a index of the leaf \a page begins.
qsizetype cellOf(const QByteArray &bytes, int page, int index)
{
    const qsizetype start = (page - 1) * pageSize;
    return start + qFromBigEndian<quint16>(bytes.constData() + start + 8 + 2 * qsizetype(index));
}

int rowsIn(const QByteArray &bytes, int page)
{
    return qFromBigEndian<quint16>(bytes.constData() + (page - 1) * pageSize + 3);
}

// Puts \a to in the place of the text \a from of a table's entry in the file's own list of them, which
// nothing that works through SQL may change.
void damageEntry(const QString &fileName, const QString &table, const QString &column, const QString &from,
                 const QString &to)
{
    sqlite3 *handle = nullptr;
    const QByteArray statement =
        u"PRAGMA writable_schema = ON; UPDATE sqlite_schema SET %1 = replace(%1, '%2', '%3') "
        "WHERE type = 'table' AND name = '%4'"_s.arg(column, from, to, table)
            .toUtf8();
    if (sqlite3_open(fileName.toUtf8().constData(), &handle) != SQLITE_OK ||
        sqlite3_exec(handle, statement.constData(), nullptr, nullptr, nullptr) != SQLITE_OK ||
        sqlite3_changes(handle) != 1)
        qFatal("%s", sqlite3_errmsg(handle));
    sqlite3_close(handle);
}

} // namespace

class TestSalvageBytes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void damagedEntry_data();
    void damagedEntry();
    void wrongRowNumber_data();
    void wrongRowNumber();
    void repeatedCell();
    void columnsOfCompanions_data();
    void columnsOfCompanions();
    void emptiedTableStaysEmpty();
    void tellsWhatIsNotAsItWas();
    void chainsThatRunAstray();

private:
    [[nodiscard]] int leafOf(FreshShop &shop, const QString &table, int which) const;
    // How many rows of each table are in the result, as in the sound file.
    QStringList counts(FreshShop &shop) const;

    SalvageShop m_both;
    FreshShop &m_shop = m_both.shop;
    FreshShop &m_result = m_both.result;
    QByteArray m_sound;
    QStringList m_counts;
    int m_smallLeaf = 0;  // of 社員
    int m_middleLeaf = 0; // of 入出庫マスター
};

QStringList TestSalvageBytes::counts(FreshShop &shop) const
{
    return shop.rows(
        u"SELECT (SELECT count(*) FROM 社員), (SELECT count(*) || ' ' || max(納品先名1) FROM 納品先), "
        "(SELECT count(*) || ' ' || sum(ID) FROM 入出庫マスター), "
        "(SELECT count(*) || ' ' || CAST(sum(金額) AS INTEGER) FROM 入出庫サブ), "
        "(SELECT count(*) || ' ' || sum(発行ID) FROM 発行控), (SELECT count(*) FROM 税率)"_s);
}

int TestSalvageBytes::leafOf(FreshShop &shop, const QString &table, int which) const
{
    return shop
        .value(
            u"SELECT pageno FROM dbstat WHERE name = ? AND pagetype = 'leaf' ORDER BY path LIMIT 1 OFFSET ?"_s,
            {table, which})
        .toInt();
}

void TestSalvageBytes::initTestCase()
{
    const QString numbers =
        u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "_s;
    m_shop.run(u"BEGIN"_s);
    m_shop.run(numbers.arg(12) + u"INSERT INTO 社員 SELECT i, '社員' || i, '内線' || i, i FROM n"_s);
    m_shop.run(numbers.arg(200) +
               u"INSERT INTO 納品先 (納品先ID, 納品先名1, 住所1) SELECT i, '顧客', '港区' || i FROM n"_s);
    m_shop.run(numbers.arg(900) +
               u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率) "
               "SELECT i, '2026-04-01', 'O' || i, i % 40, 1, 10 FROM n"_s);
    m_shop.run(numbers.arg(1500) + u"INSERT INTO 入出庫サブ (ID, 商品名, 数量, 単価, 金額) "
                                   "SELECT 1 + i % 900, '明細' || i, 2, i, 2 * i FROM n"_s);
    m_shop.run(numbers.arg(150) + u"INSERT INTO 発行控 (発行ID, 種類, 番号, 日付, 相手先ID, 税込金額) "
                                  "SELECT i, '請求書', 'S' || i, '2026-04-01', i % 40, 1100 FROM n"_s);
    m_shop.run(u"COMMIT"_s);
    m_counts = counts(m_shop);
    m_smallLeaf = leafOf(m_shop, u"社員"_s, 0);
    m_middleLeaf = leafOf(m_shop, u"入出庫マスター"_s, 3);
    m_sound = m_both.close();
}

void TestSalvageBytes::damagedEntry_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    for (const QString &table : {u"社員"_s, u"納品先"_s, u"入出庫サブ"_s, u"発行控"_s}) {
        const QString damaged = u"?"_s + table.mid(1);
        QTest::addRow("name of %s", qPrintable(table)) << table << u"name"_s << table << damaged;
        QTest::addRow("table of %s", qPrintable(table)) << table << u"tbl_name"_s << table << damaged;
        QTest::addRow("statement of %s", qPrintable(table))
            << table << u"sql"_s << u"TABLE "_s + table << u"TABLE "_s + damaged;
        QTest::addRow("start of statement of %s", qPrintable(table))
            << table << u"sql"_s << u"CREATE"_s << u"CREATD"_s;
        QTest::addRow("kind of %s", qPrintable(table)) << table << u"type"_s << u"table"_s << u"tab|e"_s;
    }
    QTest::newRow("column of lines") << u"入出庫サブ"_s << u"sql"_s << u"金額 REAL"_s << u"金顎 REAL"_s;
    QTest::newRow("key of employees") << u"社員"_s << u"sql"_s << u"社員ID INTEGER"_s << u"社員IE INTEGER"_s;
    QTest::newRow("column of customers") << u"納品先"_s << u"sql"_s << u"納品先名1"_s << u"納品先名!"_s;
}

void TestSalvageBytes::damagedEntry()
{
    QFETCH(QString, table);
    QFETCH(QString, column);
    QFETCH(QString, from);
    QFETCH(QString, to);
    const QString file = m_shop.path(u"entry.cdb"_s);
    SalvageShop::write(file, m_sound);
    damageEntry(file, table, column, from, to);
    const db::Salvage done = m_both.rebuilt(SalvageShop::read(file));
    QCOMPARE(counts(m_result), m_counts);
    QVERIFY(done.isComplete());
}

void TestSalvageBytes::wrongRowNumber_data()
{
    QTest::addColumn<bool>("isSmall");
    QTest::addColumn<bool>("isLoose"); // no tree leads to the leaf
    QTest::newRow("small table") << true << false;
    QTest::newRow("among others") << false << false;
    QTest::newRow("loose leaf") << false << true;
}

// It is too high, but within what the leaf may hold.
void TestSalvageBytes::wrongRowNumber()
{
    QFETCH(bool, isSmall);
    QFETCH(bool, isLoose);
    QByteArray bytes = m_sound;
    const int leaf = isSmall ? m_smallLeaf : m_middleLeaf;
    const qsizetype wrong = cellOf(bytes, leaf, 2) + 1;
    const qsizetype later = cellOf(bytes, leaf, rowsIn(bytes, leaf) - 2) + 1;
    QVERIFY(rowsIn(bytes, leaf) > 10);
    bytes.replace(wrong, isSmall ? 1 : 2, bytes.mid(later, isSmall ? 1 : 2));
    for (qsizetype at = pageSize; isLoose && at < bytes.size(); at += pageSize) {
        if (bytes.at(at) == 5)
            bytes.replace(at, pageSize, QByteArray(pageSize, 0));
    }
    const db::Salvage done = m_both.rebuilt(bytes);
    QCOMPARE(done.strayRows, 1);
    QCOMPARE(m_result.value(u"SELECT count(*) FROM "_s + (isSmall ? u"社員"_s : u"入出庫マスター"_s)).toInt(),
             (isSmall ? 12 : 900) - 1);
    // It was read, and is listed: it is not missing as well.
    for (const db::SalvagedTable &table : done.tables)
        QVERIFY2(table.unread == 0, qPrintable(table.table));
}

// Two places of a leaf lead to one row: the other row cannot be found.
void TestSalvageBytes::repeatedCell()
{
    QByteArray bytes = m_sound;
    const qsizetype places = (m_smallLeaf - 1) * pageSize + 8;
    bytes.replace(places + 2 * 5, 2, bytes.mid(places + 2 * 3, 2));
    const db::Salvage done = m_both.rebuilt(bytes);
    QCOMPARE(m_result.value(u"SELECT group_concat(社員ID) FROM 社員"_s).toString(),
             u"1,2,3,4,5,7,8,9,10,11,12"_s);
    QCOMPARE(done.strayRows, 0);
    const auto employees = std::ranges::find(done.tables, u"社員"_s, &db::SalvagedTable::table);
    QCOMPARE(employees->unread, 1);
}

void TestSalvageBytes::columnsOfCompanions_data()
{
    QTest::addColumn<bool>("isOlder"); // of version 1 when it got its column
    QTest::addColumn<QString>("damaged");
    QTest::newRow("of now") << false << QString();
    QTest::newRow("of version 1") << true << QString();
    QTest::newRow("of now, with a damaged name") << false << u"納品先名1"_s;
    QTest::newRow("of version 1, with a damaged name") << true << u"納品先名1"_s;
}

// A companion program adds a column of its own: the rows that are there stay as short as they are.
void TestSalvageBytes::columnsOfCompanions()
{
    QFETCH(bool, isOlder);
    QFETCH(QString, damaged);
    const QString file = m_shop.path(u"companion.cdb"_s);
    QFile::remove(file);
    if (isOlder) {
        makeVersion(1, file,
                    "INSERT INTO 納品先 (納品先ID, 納品先名1) VALUES (1, '山田'), (2, '佐藤');"
                    "ALTER TABLE 納品先 ADD COLUMN 別名 TEXT;"
                    "INSERT INTO 納品先 (納品先ID, 納品先名1, 別名) VALUES (3, '鈴木', 'すずき')");
        QVERIFY(db::migrate(file, QDate(2026, 4, 1)));
    } else {
        SalvageShop::write(file, m_sound);
    }
    QVERIFY(m_shop.connection.open(file));
    m_shop.run(u"DELETE FROM 税率 WHERE 税率ID = 7"_s);
    for (const QString &table : {u"納品先"_s, u"税率"_s, u"発行控"_s})
        m_shop.run(u"ALTER TABLE %1 ADD COLUMN 覚え TEXT"_s.arg(table));
    m_shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 覚え) VALUES (900, '高橋', 'x')"_s);
    m_shop.run(u"INSERT INTO 発行控 (発行ID, 種類, 覚え) VALUES (900, '請求書', 'x')"_s);
    const QStringList before = counts(m_shop);
    m_shop.connection.close();
    if (!damaged.isEmpty())
        damageEntry(file, u"納品先"_s, u"sql"_s, damaged, damaged.chopped(1) + u'一');
    const db::Salvage done = m_both.rebuilt(SalvageShop::read(file));
    QCOMPARE(counts(m_result), before);
    QVERIFY(done.isComplete());
}

void TestSalvageBytes::emptiedTableStaysEmpty()
{
    const QString file = m_shop.path(u"emptied.cdb"_s);
    SalvageShop::write(file, m_sound);
    QVERIFY(m_shop.connection.open(file));
    m_shop.run(u"DELETE FROM 税率"_s);
    m_shop.connection.close();
    QVERIFY(m_both.rebuilt(SalvageShop::read(file)).isComplete());
    QCOMPARE(m_result.value(u"SELECT count(*) FROM 税率"_s).toInt(), 0);
}

// Lines whose slip went with a page, a table that begins as in a new file, a column that nothing names.
void TestSalvageBytes::tellsWhatIsNotAsItWas()
{
    const auto cleared = [this](int page) {
        QByteArray bytes = m_sound;
        bytes.replace(qsizetype(page - 1) * pageSize, pageSize, QByteArray(pageSize, 0));
        return bytes;
    };
    const db::Salvage done = m_both.rebuilt(cleared(m_middleLeaf));
    const int lost = m_result
                         .value(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 900) "
                                "SELECT min(i) FROM n WHERE i NOT IN (SELECT ID FROM 入出庫マスター)"_s)
                         .toInt();
    QVERIFY(lost > 1);
    QVERIFY(done.orphanLines > 0 && done.orphanLines == qint64(done.orphans.size()));
    QCOMPARE(done.orphans.front().slip, lost);
    QCOMPARE(done.orphans.front().goods, u"明細%1"_s.arg(lost - 1));
    QCOMPARE(done.orphans.front().amount, 2. * (lost - 1));

    const QString file = m_shop.path(u"rates.cdb"_s);
    SalvageShop::write(file, m_sound);
    QVERIFY(m_shop.connection.open(file));
    const int rates = leafOf(m_shop, u"税率"_s, 0);
    m_shop.connection.close();
    const db::Salvage anew = m_both.rebuilt(cleared(rates));
    QVERIFY(std::ranges::find(anew.tables, u"税率"_s, &db::SalvagedTable::table)->isAsNew);
    QVERIFY(!anew.isComplete());

    SalvageShop::write(file, m_sound);
    QVERIFY(m_shop.connection.open(file));
    m_shop.run(u"ALTER TABLE 納品先 DROP COLUMN 誕生日"_s);
    m_shop.connection.close();
    const db::Salvage narrow = m_both.rebuilt(SalvageShop::read(file));
    QCOMPARE(std::ranges::find(narrow.tables, u"納品先"_s, &db::SalvagedTable::table)->emptied,
             QStringList{u"誕生日"_s});
}

// Of two long rows the first one's chain of pages leads into the second one's, and ends too early.
void TestSalvageBytes::chainsThatRunAstray()
{
    SalvageShop both;
    for (const int length : {20000, 8000})
        both.shop.run(u"INSERT INTO 納品先 (納品先ID, メモ) VALUES (?, ?)"_s,
                      {length, QString(length, u'x')});
    both.shop.run(u"UPDATE 納品先 SET 納品先ID = 30000 WHERE 納品先ID = 8000"_s);
    const QStringList chains =
        both.shop.rows(u"SELECT pageno FROM dbstat WHERE name = '納品先' "
                       "AND pagetype = 'overflow' AND path LIKE '%+000000' ORDER BY path"_s);
    QCOMPARE(chains.size(), 2);
    const qsizetype leaf = (leafOf(both.shop, u"納品先"_s, 0) - 1) * pageSize;
    QByteArray bytes = both.close();
    const auto pointer = [&](int chain) {
        QByteArray number(4, 0);
        qToBigEndian(chains.at(chain).toUInt(), number.data());
        return number;
    };
    const qsizetype at = bytes.indexOf(pointer(0), leaf);
    QVERIFY(at > leaf && at < leaf + pageSize);
    bytes.replace(at, 4, pointer(1));
    (void)both.rebuilt(bytes);
    QCOMPARE(both.result.rows(u"SELECT 納品先ID, length(メモ) FROM 納品先"_s), QStringList{u"30000|8000"_s});
}

QTEST_MAIN(TestSalvageBytes)
#include "tst_salvage_bytes.moc"

#include "book/generated_book.h"

#include "printing/list_sheet.h"
#include "reports/purchases/purchase_list.h"
#include "reports/purchases/purchase_report.h"
#include "tables/report_file.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using book::Period;
using reports::PurchaseList;

namespace
{

const Period april{{2026, 4, 1}, {2026, 4, 30}};

QString exact(double amount) { return QString::number(amount, 'f', 4); }

// A slip as "I 2026-04-01 1000 消費税=50", of supplier 1 at 10 percent unless "@5" or, at none, "@" follows.
void writeSlip(FreshShop &shop, int id, const QString &words, const QVariant &supplier = 1)
{
    QStringList parts = words.split(u' ');
    QVariant rate = 10;
    if (parts.last().startsWith(u'@')) {
        const QString typed = parts.takeLast().mid(1);
        rate = typed.isEmpty() ? QVariant() : typed;
    }
    shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率) VALUES (?, ?, ?, ?, ?)"_s,
             {id, parts.at(1) == u"-" ? QVariant() : parts.at(1), parts.at(0) + QString::number(id), supplier,
              rate});
    for (const QString &line : parts.mid(2)) {
        const bool named = line.contains(u'=');
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (?, ?, ?)"_s,
                 {id, named ? line.section(u'=', 0, 0) : u"りんご"_s, line.section(u'=', -1).toDouble()});
    }
}

void writeSupplier(FreshShop &shop, int id, const QString &code, const QVariant &taxClass)
{
    shop.run(u"INSERT INTO 仕入先 (仕入先ID, コード, 仕入先名1, 消費税区分) VALUES (?, ?, ?, ?)"_s,
             {id, code, u"仕入先%1"_s.arg(id), taxClass});
}

PurchaseList listOf(FreshShop &shop, const Period &period, bool withIdle = false)
{
    const auto list = reports::purchaseList(shop.connection, period, withIdle, base::unwatched);
    return list ? *list : PurchaseList();
}

// "previous purchases tax payments unbooked"
QString shown(const reports::PurchaseSums &sums)
{
    const auto amount = [](double yen) { return QString::number(yen, 'g', 15); };
    return QStringList{amount(sums.previous), amount(sums.purchases), amount(sums.tax), amount(sums.payments),
                       sums.unbooked ? amount(*sums.unbooked) : u"?"_s}
        .join(u' ');
}

} // namespace

class TestPurchaseList : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_shop = std::make_unique<FreshShop>(); }
    // Each test's slips are rolled back.
    void init() { m_shop->run(u"BEGIN"_s); }
    void cleanup() { m_shop->run(u"ROLLBACK"_s); }

    void rules_data();
    void rules();
    void followingValues();
    void orderIdleAndDeletedSuppliers();
    void generatedBook();
    void printedAndExported();

private:
    std::unique_ptr<FreshShop> m_shop;
};

void TestPurchaseList::rules_data()
{
    QTest::addColumn<int>("taxClass");
    QTest::addColumn<QStringList>("slips");
    QTest::addColumn<QString>("sums");
    const auto row = [](const char *name, int taxClass, const QStringList &slips, const QString &sums) {
        QTest::newRow(name) << taxClass << slips << sums;
    };
    row("payment before the period", 0, {u"I 2026-03-01 1000"_s, u"P 2026-03-31 400"_s}, u"600 0 0 0 0"_s);
    row("payment within it", 0, {u"I 2026-03-01 1000"_s, u"P 2026-04-30 400"_s}, u"1000 0 0 400 0"_s);
    row("carried within it", 0, {u"A 2026-04-15 700"_s}, u"700 0 0 0 0"_s);
    row("carried before it", 0, {u"A 2026-03-15 700"_s}, u"700 0 0 0 0"_s);
    row("purchases only", 0, {u"I 2026-04-01 1000 2000 消費税=300"_s}, u"0 3300 300 0 0"_s);
    row("tax line before the period", 0, {u"I 2026-03-31 1000 消費税=100"_s}, u"1100 0 0 0 0"_s);
    row("after the period", 0, {u"I 2026-05-01 1000"_s, u"P 2026-05-01 1"_s}, u"0 0 0 0 0"_s);
    row("tax named on a payment", 0, {u"P 2026-04-01 消費税=50"_s}, u"0 0 0 50 0"_s);
    row("other kinds", 0, {u"T 2026-04-01 9"_s, u"O 2026-04-01 9"_s, u"R 2026-04-01 9"_s}, u"0 0 0 0 0"_s);
    row("no date", 0, {u"I - 1000"_s, u"I abc 200"_s, u"I 2026-04-31 30"_s, u"P 20260401 4"_s},
        u"1226 0 0 0 0"_s);
    row("tenths", 0, QStringList(10, u"I 2026-04-01 0.1"_s), u"0 1 0 0 0"_s);
    row("on the bill: truncated once", 1, {u"I 2026-04-01 1005"_s, u"I 2026-04-02 1004"_s},
        u"0 2009 0 0 200"_s);
    row("on the bill: purchases before", 1, {u"I 2026-03-01 5000"_s}, u"5000 0 0 0 0"_s);
    row("on the bill: booked", 1, {u"I 2026-04-01 1000"_s, u"I 2026-04-30 消費税=99"_s}, u"0 1099 99 0 0"_s);
    row("on the bill: booked and reversed", 1,
        {u"I 2026-04-01 1000"_s, u"I 2026-04-30 消費税=99"_s, u"I 2026-04-30 消費税=-99"_s},
        u"0 1000 0 0 100"_s);
    row("on the bill: reversed at another rate", 1,
        {u"I 2026-04-01 1000 消費税=90"_s, u"I 2026-04-30 消費税=-90 @5"_s}, u"0 1000 0 0 100"_s);
    row("on the bill: booked another month", 1, {u"I 2026-04-01 1000"_s, u"I 2026-05-01 消費税=100"_s},
        u"0 1000 0 0 100"_s);
    row("on the bill: two rates", 1, {u"I 2026-04-01 199 @5"_s, u"I 2026-04-02 99"_s, u"I 2026-04-03 1 @5"_s},
        u"0 299 0 0 19"_s);
    row("on the bill: taken back", 1, {u"I 2026-04-01 -1005"_s}, u"0 -1005 0 0 -100"_s);
    row("on the bill: a rate that is none", 1, {u"I 2026-04-01 1000 @500"_s}, u"0 1000 0 0 ?"_s);
    row("on the bill: no rate", 1, {u"I 2026-04-01 1000 @"_s, u"I 2026-04-01 5"_s}, u"0 1005 0 0 ?"_s);
    row("prices include it", 2, {u"I 2026-04-01 1000"_s}, u"0 1000 0 0 0"_s);
}

void TestPurchaseList::rules()
{
    QFETCH(int, taxClass);
    QFETCH(QStringList, slips);
    QFETCH(QString, sums);
    FreshShop &shop = *m_shop;
    writeSupplier(shop, 1, u"a"_s, taxClass);
    for (int i = 0; i < slips.size(); ++i)
        writeSlip(shop, i + 1, slips.at(i));
    const auto list = listOf(shop, april, true);
    QCOMPARE(list.suppliers.size(), 1u);
    QCOMPARE(shown(list.suppliers.front().sums), sums);
    QCOMPARE(shown(list.totals), sums);
    const auto one = reports::purchasesOf(shop.connection, 1, april);
    QVERIFY(one);
    QCOMPARE(shown(one->sums), sums);
    QCOMPARE(listOf(shop, april).suppliers.empty(), sums == u"0 0 0 0 0");
}

void TestPurchaseList::followingValues()
{
    const reports::PurchaseSums sums{1000.1, 550.4, 50.4, 300};
    QCOMPARE(exact(sums.balance()), u"1250.5000"_s);
    QCOMPARE(exact(sums.carried()), u"700.1000"_s);
    QCOMPARE(sums.untaxed(), 500.0);
    FreshShop &shop = *m_shop;
    QVERIFY(!reports::purchaseList(shop.connection, {april.to, april.from}, false, base::unwatched));
    QVERIFY(!reports::purchaseList(shop.connection, april, false, [](qint64, qint64) { return false; }));
}

void TestPurchaseList::orderIdleAndDeletedSuppliers()
{
    FreshShop &shop = *m_shop;
    writeSupplier(shop, 1, u"b"_s, 0);
    writeSupplier(shop, 2, u"a"_s, 0);
    writeSupplier(shop, 3, u"a"_s, {});
    writeSupplier(shop, 4, u"c"_s, 1);
    writeSlip(shop, 1, u"I 2026-04-01 100"_s, 1);
    writeSlip(shop, 2, u"I 2026-04-01 200"_s, 3);
    writeSlip(shop, 3, u"I 2026-03-01 400"_s, 99);
    writeSlip(shop, 4, u"O 2026-04-01 800"_s, 98); // a customer's
    writeSlip(shop, 5, u"I 2026-04-01 1600"_s, 2);
    writeSlip(shop, 6, u"I 2026-04-01 3200"_s, QVariant());
    const auto names = [&](bool withIdle) {
        QStringList listed;
        for (const auto &supplier : listOf(shop, april, withIdle).suppliers)
            listed << supplier.name();
        return listed.join(u'/');
    };
    QCOMPARE(names(false), u"仕入先2/仕入先3/仕入先1/(削除済み) ID 99/(相手先なし)"_s);
    QCOMPARE(names(true), u"仕入先2/仕入先3/仕入先1/仕入先4/(削除済み) ID 99/(相手先なし)"_s);
    QCOMPARE(shown(listOf(shop, april).totals), u"400 5100 0 0 0"_s);
}

// Every month of fifteen, against sums over the running columns of one line list.
void TestPurchaseList::generatedBook()
{
    FreshShop &shop = *m_shop;
    GeneratedBook::writeTo(shop);
    shop.run(
        u"CREATE TEMP TABLE 行 AS SELECT h.相手先ID AS 先, substr(h.伝票番号, 1, 1) AS 字, h.日付 AS 日, "
        "CAST(replace(printf('%.4f', s.金額), '.', '') AS INTEGER) AS 額, s.商品名 IS '消費税' AS 税 "
        "FROM 入出庫サブ s JOIN 入出庫マスター h USING (ID)"_s);
    const QList<QDate> ends = GeneratedBook::monthEnds();
    for (int month = 1; month < ends.size(); ++month) {
        const Period period{ends.at(month - 1).addDays(1), ends.at(month)};
        const auto list = listOf(shop, period, true);
        QCOMPARE(list.suppliers.size(), 10u);
        for (const auto &supplier : list.suppliers) {
            QCOMPARE(supplier.unknown, supplier.supplier == 6 || supplier.supplier == 13);
            const QString expected =
                shop.rows(u"WITH 問 AS (SELECT ? AS 始, ? AS 終, ? AS 人) SELECT "
                          "total(額 * (字 = 'A')) + total(額 * (日 < 始 AND 字 = 'I')) - total(額 * (日 < 始 "
                          "AND "
                          "字 = 'P')), total(額 * (日 >= 始 AND 字 = 'I')), "
                          "total(額 * (日 >= 始 AND 字 = 'I' AND 税)), total(額 * (日 >= 始 AND 字 = 'P')), "
                          "CASE WHEN 人 % 3 <> 1 OR 人 IN (6, 13) OR total(額 * (日 >= 始 AND 字 = 'I' AND "
                          "税)) "
                          "<> 0 THEN 0 "
                          "ELSE CAST(total(額 * (日 >= 始 AND 字 = 'I')) AS INTEGER) / 100000 END "
                          "FROM 行, 問 WHERE 先 = 人 AND 日 <= 終"_s,
                          {period.from.toString(Qt::ISODate), period.to.toString(Qt::ISODate),
                           *supplier.supplier})
                    .join(u' ');
            const reports::PurchaseSums &sums = supplier.sums;
            const QStringList fields = expected.split(u'|');
            QCOMPARE(exact(sums.previous), exact(fields.at(0).toDouble() / 10000));
            QCOMPARE(exact(sums.purchases), exact(fields.at(1).toDouble() / 10000));
            QCOMPARE(exact(sums.tax), exact(fields.at(2).toDouble() / 10000));
            QCOMPARE(exact(sums.payments), exact(fields.at(3).toDouble() / 10000));
            QVERIFY(sums.unbooked);
            QCOMPARE(*sums.unbooked, fields.at(4).toDouble());
        }
    }
}

void TestPurchaseList::printedAndExported()
{
    FreshShop &shop = *m_shop;
    writeSupplier(shop, 1, u"S01"_s, 1);
    writeSlip(shop, 1, u"I 2026-04-01 123456"_s);
    writeSlip(shop, 2, u"P 2026-04-01 456"_s);
    const auto list = listOf(shop, april);
    const base::Report report = reports::purchaseReport(list, april);
    QStringList printed;
    const auto sheets = printing::listSheets(report, {}, printing::paperFor(report));
    for (const printing::TextItem &text : sheets.front().texts)
        printed << text.text;
    const QStringList row{u"S01"_s,     u"仕入先1"_s, u"0"_s,       u"456"_s,     u"-456"_s,
                          u"123,456"_s, u"0"_s,       u"123,456"_s, u"123,000"_s, u"12,345"_s};
    const qsizetype at = printed.indexOf(u"S01"_s);
    QCOMPARE(printed.mid(at, row.size()), row);
    QCOMPARE(printed.mid(at + row.size(), 9), QStringList{u"合計"_s} + row.mid(2));
    const QString file = shop.path(u"list.csv"_s);
    QVERIFY(tables::writeReport(file, report, base::unwatched));
    QFile written(file);
    QVERIFY(written.open(QFile::ReadOnly));
    QCOMPARE(written.readAll().count('\n'), 3);
}

QTEST_GUILESS_MAIN(TestPurchaseList)
#include "tst_purchase_list.moc"

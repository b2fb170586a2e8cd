#include "book/generated_book.h"
#include "book/movement_sums.h"
#include "registers/glance/customer_glance.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using registers::GlanceReader;

namespace
{

double balanceOf(FreshShop &shop, qint64 customer)
{
    base::ExactSum sum;
    const auto added = book::sumMovements(
        shop.connection,
        {.kinds = book::balanceKindsOf(book::Party::Customer), .counterpart = book::CounterpartKey(customer)},
        {}, base::unwatched, [&sum](const book::MovementSum &part) { sum.add(part.inBalance()); });
    return added ? sum.value() : -1;
}

// The whole glance, and how many pieces it took.
int readAll(GlanceReader &reader)
{
    int pieces = 0;
    for (; !reader.isComplete() && pieces < 1000; ++pieces) {
        if (!reader.readOn())
            return -1;
    }
    return pieces;
}

} // namespace

/// What a register shows beside a customer, read piece by piece.
class TestCustomerGlance : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithTheBook()
    {
        FreshShop shop;
        GeneratedBook::writeTo(shop);
        shop.run(u"UPDATE 入出庫マスター SET 日付 = NULL WHERE ID % 60 = 1"_s);
        for (qint64 customer = 1; customer <= 13; ++customer) {
            GlanceReader reader(shop.connection, customer);
            QVERIFY(readAll(reader) > 0);
            QCOMPARE(reader.glance().balance.value(), customer == 13 ? 0 : balanceOf(shop, customer));
            QStringList slips;
            for (const book::RecentSlip &slip : reader.glance().slips)
                slips << u"%1|%2|%3|%4"_s.arg(QString::number(slip.id), slip.date, slip.number,
                                              QString::number(slip.amount, 'f', 4));
            QCOMPARE(
                slips,
                shop.rows(u"SELECT ID, 日付, 伝票番号, printf('%.4f', COALESCE((SELECT SUM(金額) FROM "
                          u"入出庫サブ AS s "
                          "WHERE s.ID = m.ID), 0)) FROM 入出庫マスター AS m WHERE 相手先ID = ? AND 種別 IN "
                          "('O', 'R', 'B', 'M') AND 日付 IS NOT NULL ORDER BY 日付 DESC, ID DESC LIMIT 8"_s,
                          {customer}));
        }
    }

    void tellsWhatIsBoughtAsARule()
    {
        FreshShop shop;
        shop.run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 60) "
                 "INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) "
                 "SELECT i, date('2026-01-01', i || ' days'), 'O' || i, 7 FROM n"_s);
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 規格, 単価, 金額) VALUES (5, '古', NULL, 1, 1), "
                 "(30, '米', '5kg', 2000, 1), (30, '米', '5kg', 2000, 1), (40, '米', '5kg', 2100, 1), "
                 "(50, '茶', NULL, 800, 1), (50, '消費税', NULL, NULL, 1), (60, '米', '10kg', 3900, 1)"_s);
        const auto goods = book::usualGoods(shop.connection, book::sale, 7, 40, 2);
        QVERIFY(goods);
        QStringList found;
        for (const book::UsualGoods &each : *goods)
            found << u"%1 %2 %3 %4 %5"_s.arg(each.product, each.specification, QString::number(each.times),
                                             each.lastDate, QString::number(each.price.value_or(0)));
        // The one that came last goes first among equals; what is older than the forty last slips does not
        // count.
        QCOMPARE(found, QStringList({u"米 5kg 2 2026-02-10 2100"_s, u"米 10kg 1 2026-03-02 3900"_s}));
    }

    // What came back was not bought, in the same slip or in a later one.
    void returnsAreTakenOff()
    {
        FreshShop shop;
        shop.run(
            u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (1, '2026-01-01', 'O1', 7), "
            "(2, '2026-01-02', 'O2', 7), (3, '2026-01-03', 'O3', 7), (4, '2026-01-04', 'O4', 7)"_s);
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単価, 金額) VALUES "
                 "(1, '米', '', 2, 2000, 4000), (2, '米', '', 1, 2100, 2100), (3, '米', '', 3, 2200, 6600), "
                 "(4, '米', '', -3, 2200, -6600), " // returned once
                 "(1, '茶', '', 1, 800, 800), (2, '茶', '', -1, 800, -800), "
                 "(3, '味噌', '', 5, 500, 2500), (3, '味噌', '', -1, 500, -500), "
                 "(4, '送料', NULL, NULL, NULL, 700), (3, '値引', NULL, NULL, NULL, -100)"_s);
        const auto goods = book::usualGoods(shop.connection, book::sale, 7, 40, 9);
        QVERIFY(goods);
        QStringList found;
        for (const book::UsualGoods &each : *goods)
            found << u"%1 %2 %3 %4"_s.arg(each.product, QString::number(each.times), each.lastDate,
                                          QString::number(each.price.value_or(0)));
        QCOMPARE(found, QStringList({u"米 2 2026-01-03 2200"_s, u"送料 1 2026-01-04 0"_s,
                                     u"味噌 1 2026-01-03 500"_s}));
    }

    // One customer with most of a large book: no piece reads more than a part of it.
    void readsALargeBookInPieces()
    {
        FreshShop shop;
        shop.run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 9000) "
                 "INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) SELECT i, CASE WHEN i % 100 = 0 "
                 "THEN NULL WHEN i = 77 "
                 "THEN '2026-02-30' ELSE date('2023-01-01', (i / 8) || ' days') END, "
                 "CASE WHEN i % 3 = 0 THEN 'R' ELSE 'O' END || i, 7 FROM n"_s);
        shop.run(
            u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) SELECT ID, 'x', ID % 997 + 0.1 FROM 入出庫マスター"_s);
        GlanceReader reader(shop.connection, 7);
        const int pieces = readAll(reader);
        QVERIFY2(pieces > 10, qPrintable(QString::number(pieces))); // at their fastest they double
        QCOMPARE(reader.glance().balance.value(), balanceOf(shop, 7));
        QVERIFY(reader.glance().balance.value() != 0);
    }

    void showsShipments()
    {
        FreshShop shop;
        shop.run(
            u"INSERT INTO 発送マスター (発送ID, 納品先ID, 依頼主ID, 受付日, 届先名1, 届先名2, 品名) VALUES "
            "(1, 7, NULL, '2026-01-01', '佐藤', NULL, 'りんご'), (2, 8, 9, '2026-03-01', 'x', NULL, 'x'), "
            "(3, NULL, 7, '2026-02-01', '鈴木', '様方', '米')"_s);
        GlanceReader reader(shop.connection, 7);
        QVERIFY(readAll(reader) > 0);
        QCOMPARE(reader.glance().shipments.size(), 2U);
        QCOMPARE(reader.glance().shipments.front().consignee, u"鈴木　様方"_s);
        QCOMPARE(reader.glance().shipments.front().id, 3);
        QCOMPARE(reader.glance().balance.value(), 0.0);
    }
};

QTEST_GUILESS_MAIN(TestCustomerGlance)
#include "tst_customer_glance.moc"

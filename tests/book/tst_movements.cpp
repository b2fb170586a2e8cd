#include "book/generated_book.h"

#include "book/movement_sums.h"
#include "book/movements.h"
#include "book/slip_counts.h"

#include <QtTest>

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;
using book::Days;
using book::LinesOf;
using book::Selection;

namespace
{

// Ten-thousandths, out of the decimal form of an amount.
const QString digits = u"CAST(replace(printf('%.4f', 金額), '.', '') AS INTEGER)"_s;

QString tenThousandths(double amount) { return QString::number(std::llround(amount * 10'000)); }

Selection selection(std::vector<book::SlipKind> kinds, const Days &days = {}, LinesOf lines = LinesOf::All)
{
    return {.kinds = std::move(kinds), .days = days, .lines = lines};
}

// The lines of one group added up: "counterpart kind since lines taxLines amount tax".
QStringList groupsOf(db::Connection &connection, const Selection &selected, const book::Grouping &grouping)
{
    struct Sum
    {
        base::ExactSum amount;
        base::ExactSum tax;
        qint64 lines = 0;
        qint64 taxLines = 0;
    };
    std::map<QString, Sum> sums;
    const auto added = book::sumMovements(connection, selected, grouping, base::unwatched,
                                          [&sums](const book::MovementSum &part) {
                                              Sum &sum = sums[u"%1 %2 %3"_s.arg(part.counterpart.value_or(0))
                                                                  .arg(QChar(part.kind.letter))
                                                                  .arg(part.isSince ? 1 : 0)];
                                              sum.amount.add(part.amount);
                                              sum.tax.add(part.tax);
                                              sum.lines += part.lines;
                                              sum.taxLines += part.taxLines;
                                          });
    if (!added)
        return {added.error().text};
    QStringList groups;
    for (const auto &[name, sum] : sums) {
        if (sum.lines > 0) // slips without lines alone
            groups << QStringList{name, QString::number(sum.lines), QString::number(sum.taxLines),
                                  tenThousandths(sum.amount.value()), tenThousandths(sum.tax.value())}
                          .join(u' ');
    }
    groups.sort();
    return groups;
}

} // namespace

/// Lines of slips and sums over them, of a generated book against what is made of it in another way, and of
/// books that other hands have written.
class TestMovements : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_shop = std::make_unique<FreshShop>();
        GeneratedBook::writeTo(*m_shop);
        m_shop->run(u"UPDATE 入出庫マスター SET 相手先ID = NULL WHERE ID % 40 = 0"_s);
        m_shop->run(u"UPDATE 入出庫マスター SET 日付 = replace(日付, '-', '') WHERE ID % 50 = 7"_s);
        m_shop->run(u"UPDATE 入出庫マスター SET 日付 = NULL WHERE ID % 60 = 1"_s);
    }

    void linesOfASelection_data()
    {
        QTest::addColumn<Selection>("selected");
        QTest::addColumn<QString>("letters");
        QTest::addColumn<QString>("condition"); // upon s, the slip, and l, its line
        const book::Period june{{2025, 6, 1}, {2025, 6, 30}};
        QTest::newRow("a period's sales")
            << selection({book::sale}, Days::within(june)) << u"O"_s << u"s.日付 LIKE '2025-06-__'"_s;
        QTest::newRow("up to a day, without tax")
            << selection({book::purchase, book::stocktake}, Days::upTo({2025, 2, 5}), LinesOf::Goods)
            << u"IT"_s
            << u"(s.日付 IS NULL OR length(s.日付) = 8 OR s.日付 < '2025-02-06') AND l.商品名 <> '消費税'"_s;
        QTest::newRow("before a day, tax alone")
            << selection({book::sale}, Days::before({2025, 2, 5}), LinesOf::Tax) << u"O"_s
            << u"(s.日付 IS NULL OR length(s.日付) = 8 OR s.日付 < '2025-02-05') AND l.商品名 = '消費税'"_s;
        QTest::newRow("without a day") << selection({book::receipt, book::payment}, Days::none()) << u"RP"_s
                                       << u"(s.日付 IS NULL OR s.日付 NOT LIKE '%-%')"_s;
        Selection ofCustomer = selection({book::sale, book::receipt, book::receivableCarried});
        ofCustomer.counterpart = 7;
        QTest::newRow("a customer's") << ofCustomer << u"ORB"_s << u"s.相手先ID = 7"_s;
        ofCustomer.counterpart = book::CounterpartKey();
        QTest::newRow("nobody's") << ofCustomer << u"ORB"_s << u"s.相手先ID IS NULL"_s;
        Selection ofGoods = selection({book::sale, book::purchase, book::stocktake});
        ofGoods.goods = book::Goods{u"商品3"_s, QString(), u"kg"_s};
        QTest::newRow("one kind of goods")
            << ofGoods << u"OIT"_s << u"l.商品名 || ifnull(l.規格, '') || l.単位 = '商品3kg'"_s;
    }
    void linesOfASelection()
    {
        QFETCH(Selection, selected);
        QFETCH(QString, letters);
        QFETCH(QString, condition);
        const auto lines = book::movements(m_shop->connection, selected);
        QVERIFY(lines);
        QStringList found;
        for (const book::Movement &line : *lines)
            found << QStringList{line.date,
                                 QString::number(line.slip),
                                 line.number,
                                 line.counterpart ? QString::number(*line.counterpart) : u"-"_s,
                                 line.product,
                                 tenThousandths(line.amount),
                                 tenThousandths(line.inBalance())}
                         .join(u'|');
        const QStringList expected =
            m_shop->rows(u"SELECT CASE WHEN length(s.日付) = 10 THEN s.日付 ELSE '' END AS 日, s.ID, "
                         u"伝票番号, 相手先ID, 商品名, %1, "
                         "%1 * CASE substr(伝票番号, 1, 1) WHEN 'O' THEN 1 WHEN 'I' THEN 1 WHEN 'A' THEN 1 "
                         "WHEN 'B' THEN 1 "
                         "WHEN 'R' THEN -1 WHEN 'P' THEN -1 ELSE 0 END FROM 入出庫マスター s, 入出庫サブ l "
                         "WHERE s.ID = l.ID AND "
                         "instr('%2', substr(伝票番号, 1, 1)) > 0 AND %3 ORDER BY 日, s.ID, l.明細ID"_s.arg(
                             digits, letters, condition));
        QVERIFY(!found.isEmpty());
        QCOMPARE(found, expected);

        // The same lines for a stock, whatever their order.
        QStringList visited;
        QVERIFY(book::visitGoodsMovements(
            m_shop->connection, selected, base::unwatched, [&visited](const book::Movement &line) {
                visited << line.date + u'|' + QString::number(line.slip) + u'|' + line.product;
            }));
        QCOMPARE(visited.size(), found.size());
        visited.sort();
        QStringList short_;
        for (const QString &line : std::as_const(found))
            short_ << line.section(u'|', 0, 1) + u'|' + line.section(u'|', 4, 4);
        short_.sort();
        QCOMPARE(visited, short_);
    }

    void sumsByCounterpart()
    {
        const QString since = u"2025-07-01"_s;
        QStringList expected = m_shop->rows(
            u"SELECT ifnull(相手先ID, 0) || ' ' || k || ' ' || n || ' ' || count(*) || ' ' || sum(t) || ' ' "
            u"|| "
            "sum(q) || ' ' || sum(t * q) FROM (SELECT 相手先ID, substr(伝票番号, 1, 1) AS k, "
            "ifnull(日付, '') BETWEEN '%1' AND '2025-12-31' AND length(日付) = 10 AS n, 商品名 = '消費税' AS "
            "t, %2 AS q "
            "FROM 入出庫マスター JOIN 入出庫サブ USING (ID) "
            "WHERE length(日付) = 8 OR 日付 IS NULL OR 日付 < '2026') WHERE k IN ('I', 'P', 'A') "
            "GROUP BY 相手先ID, k, n ORDER BY 1"_s.arg(since, digits));
        expected.sort();
        const QStringList found = groupsOf(
            m_shop->connection,
            selection(book::balanceKindsOf(book::Party::Supplier), Days::upTo({2025, 12, 31})),
            {.byCounterpart = true, .since = QDate::fromString(since, Qt::ISODate), .withTax = true});
        QVERIFY(found.size() > 20);
        QCOMPARE(found, expected);
    }

    void lastDays()
    {
        QStringList found;
        QVERIFY(book::sumMovements(m_shop->connection, selection({book::sale}, Days::upTo({2025, 10, 31})),
                                   {.withLastDay = true}, base::unwatched,
                                   [&found](const book::MovementSum &part) { found << part.lastDay; }));
        QCOMPARE(
            *std::max_element(found.begin(), found.end()),
            m_shop
                ->value(u"SELECT max(日付) FROM 入出庫マスター WHERE 伝票番号 GLOB 'O*' AND 日付 < '2025-11' "
                        "AND length(日付) = 10"_s)
                .toString());
    }

    // What other hands write as a date is older than every day.
    void oddDatesAreOlderThanEveryDay_data()
    {
        QTest::addColumn<QVariant>("date");
        for (const char *text : {"20240101", "2024-02-31", "2023-02-29", "2024-1-5", "2024/01/05", "", "abc",
                                 "２０２４-０１-０５", " 2024-01-05", "2024-01-05 ", "2024-01-05 00:00:00",
                                 "9999-99-99", "0000-00-00", "-024-01-05", "99999"})
            QTest::newRow(text) << QVariant(QString::fromUtf8(text));
        QTest::newRow("none") << QVariant();
        QTest::newRow("bytes") << QVariant(QByteArray("2024-01-05"));
        QTest::newRow("a number") << QVariant(45296.5);
    }
    void oddDatesAreOlderThanEveryDay()
    {
        QFETCH(QVariant, date);
        FreshShop shop;
        shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (1, ?, 'O1', 7), "
                 "(2, '2024-01-05', 'O2', 7), (3, '2024-02-29', 'O3', 7)"_s,
                 {date});
        shop.run(u"INSERT INTO 入出庫サブ (ID, 金額) SELECT ID, ID FROM 入出庫マスター"_s);
        const auto slipsIn = [&](const Days &days) {
            QString slips;
            const auto lines = book::movements(shop.connection, selection({book::sale}, days));
            for (const book::Movement &line : *lines)
                slips += QString::number(line.slip) + line.date + u' ';
            double sum = 0;
            const auto summed =
                book::sumMovements(shop.connection, selection({book::sale}, days), {}, base::unwatched,
                                   [&sum](const book::MovementSum &part) { sum += part.amount.value(); });
            return summed ? slips + QString::number(sum) : summed.error().text;
        };
        QCOMPARE(slipsIn(Days::all()), u"1 22024-01-05 32024-02-29 6"_s);
        QCOMPARE(slipsIn(Days::before({1900, 1, 1})), u"1 1"_s);
        QCOMPARE(slipsIn(Days::upTo({2024, 1, 5})), u"1 22024-01-05 3"_s);
        QCOMPARE(slipsIn(Days::within({{1900, 1, 1}, {9999, 12, 31}})), u"22024-01-05 32024-02-29 5"_s);
        QCOMPARE(slipsIn(Days::none()), u"1 1"_s);
    }

    // More than a slice of them, cut among texts and again among bytes, which come after every text.
    void everyOddDateIsInOneSlice()
    {
        FreshShop shop;
        shop.run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 9000) "
                 "INSERT INTO 入出庫マスター (ID, 日付, 伝票番号) SELECT i, "
                 "CASE WHEN i <= 4500 THEN 'R6.1.5' ELSE CAST('5.1.' || i AS BLOB) END, 'O' || i FROM n"_s);
        shop.run(u"INSERT INTO 入出庫サブ (ID, 金額) SELECT ID, 1 FROM 入出庫マスター"_s);
        qint64 visited = 0;
        QVERIFY(book::visitGoodsMovements(
            shop.connection, selection({book::sale}), base::unwatched,
            [&visited](const book::Movement &line) { visited += line.date.isEmpty() ? 1 : 0; }));
        QCOMPARE(visited, 9000);
        QCOMPARE(groupsOf(shop.connection, selection({book::sale}), {}),
                 QStringList(u"0 O 0 9000 0 90000000 0"_s));
    }

    // Clerks type the letter as their keyboard stands.
    void lettersInAnyWidthAndCase()
    {
        FreshShop shop;
        shop.run(
            u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (1, '2024-01-05', 'o12', 7), "
            "(2, '2024-01-05', 'Ｏ12', 7), (3, '2024-01-05', 'ｏ-1', 7), (4, '2024-01-05', 'X1', 7), "
            "(5, '2024-01-05', '', 7), (6, '2024-01-05', NULL, 7), (7, '2024-01-05', 'お1', 7), "
            "(8, '2024-01-05', '0-1', 7)"_s);
        shop.run(u"INSERT INTO 入出庫サブ (ID, 金額) SELECT ID, ID FROM 入出庫マスター"_s);
        const auto lines = book::movements(shop.connection, selection({book::sale}));
        QCOMPARE(lines->size(), 3u);
        QVERIFY(lines->front().kind == book::sale);
        QCOMPARE(book::slipsOfEach(shop.connection, book::Party::Customer)->value(7), 3);
        QVERIFY(*book::hasSlips(shop.connection, book::sale));
        QVERIFY(!*book::hasSlips(shop.connection, book::estimate));
        QCOMPARE(*book::countSlips(shop.connection,
                                   {.kinds = book::kindsOf(book::Party::Supplier), .counterpart = 7}),
                 0);
    }

    void readingIsStopped()
    {
        const auto stop = [](qint64, qint64) { return false; };
        const Selection all = selection({book::sale});
        const auto visited = book::visitGoodsMovements(m_shop->connection, all, stop, [](const auto &) {});
        QVERIFY(!visited && visited.error().cancelled);
        const auto summed = book::sumMovements(m_shop->connection, all, {}, stop, [](const auto &) {});
        QVERIFY(!summed && summed.error().cancelled);
    }

private:
    std::unique_ptr<FreshShop> m_shop;
};

QTEST_GUILESS_MAIN(TestMovements)
#include "tst_movements.moc"

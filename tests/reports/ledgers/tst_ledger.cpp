#include "book/balance.h"
#include "book/generated_book.h"

#include "book/slip_store.h"
#include "reports/daily/day_report.h"
#include "reports/ledgers/ledger_report.h"
#include "reports/ledgers/stock_ledger.h"
#include "reports/purchases/purchase_list.h"
#include "text/numbers.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using book::Party;

namespace
{

const auto unwatched = base::Progress(base::unwatched);

// An amount as text with its four decimals, so that nothing is lost in comparing.
QString exact(double amount) { return QString::number(amount, 'f', 4); }

QString stored(const QDate &date) { return date.toString(Qt::ISODate); }

// Ten-thousandths as text, out of the decimal form of each amount.
const QString digits = u"CAST(replace(printf('%.4f', 金額), '.', '') AS INTEGER)"_s;

// The lines of a party's balances with their headers; 額 is what each adds to the balance.
QString signedLines(Party party)
{
    const QString letters = party == Party::Customer ? u"'O', 'B', 'R'"_s : u"'I', 'A', 'P'"_s;
    return u"(SELECT l.rowid AS 行, ID, 日付, 伝票番号, 相手先ID, 商品名, "
           "CASE WHEN substr(伝票番号, 1, 1) IN ('R', 'P') THEN -1 ELSE 1 END * %1 AS 額 "
           "FROM 入出庫サブ l JOIN 入出庫マスター USING (ID) WHERE substr(伝票番号, 1, 1) IN (%2))"_s.arg(
               digits, letters);
}

QList<Party> parties() { return {Party::Customer, Party::Supplier}; }

} // namespace

/// The balances and ledgers of a generated book, against sums that are made another way.
class TestLedger : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_shop = std::make_unique<FreshShop>();
        GeneratedBook::writeTo(*m_shop);
        m_shop->run(u"UPDATE 入出庫マスター SET 相手先ID = NULL WHERE ID % 40 = 0"_s);
    }

    void balancesOnEveryMonthEnd()
    {
        for (const Party party : parties()) {
            for (const QDate &end : GeneratedBook::monthEnds()) {
                const auto list = reports::balanceList(m_shop->connection, party, end, unwatched);
                QVERIFY(list);
                QStringList found;
                for (const auto &balance : *list)
                    found << (balance.counterpart ? QString::number(*balance.counterpart) : u"-"_s) + u'|' +
                                 exact(balance.balance);
                found.sort();
                QStringList expected = m_shop->rows(
                    u"SELECT 相手先ID, printf('%s%d.%04d', CASE WHEN 計 < 0 THEN '-' ELSE '' END, abs(計) / "
                    "10000, abs(計) % 10000) FROM (SELECT 相手先ID, sum(額) AS 計 FROM "_s +
                        signedLines(party) + u" WHERE 日付 <= ? GROUP BY 相手先ID)"_s,
                    {stored(end)});
                expected.sort();
                // Counterparts with empty slips only have a balance of nothing.
                for (const QString &line : std::as_const(found))
                    QVERIFY2(expected.contains(line) || line.endsWith(u"|0.0000"_s), qPrintable(line));
                for (const QString &line : std::as_const(expected))
                    QVERIFY2(found.contains(line), qPrintable(stored(end) + u' ' + line));
            }
        }
    }

    // Every line of every counterpart, with the balance after it.
    void ledgersLineByLine()
    {
        const book::Period quarter{{2025, 7, 1}, {2025, 9, 30}};
        for (const Party party : parties()) {
            for (int id = 0; id <= 14; ++id) {
                const book::CounterpartKey counterpart = id > 0 ? book::CounterpartKey(id) : std::nullopt;
                const auto ledger = reports::readLedger(m_shop->connection, party, counterpart, quarter);
                QVERIFY(ledger);
                QStringList found;
                for (const auto &line : ledger->lines)
                    found << QString::number(line.slip) + u'|' + line.number + u'|' + line.product + u'|' +
                                 QString::number(std::llround(line.balance * 10000));
                QVERIFY(id > 0 || !found.isEmpty());
                QCOMPARE(
                    found,
                    m_shop->rows(
                        u"SELECT ID, 伝票番号, 商品名, 残 FROM (SELECT *, SUM(額) OVER (ORDER BY "
                        "日付, ID, 行) AS 残 FROM "_s +
                            signedLines(party) +
                            u" WHERE ifnull(相手先ID, 0) = ?) WHERE 日付 BETWEEN ? AND ? ORDER BY 日付, ID, 行"_s,
                        {id, stored(quarter.from), stored(quarter.to)}));
            }
        }
    }

    void totalsAgreeWithTheirColumns()
    {
        const book::Period year{{2025, 4, 1}, {2026, 3, 31}};
        for (const Party party : parties()) {
            const auto list = reports::balanceList(m_shop->connection, party, year.to, unwatched);
            QVERIFY(list);
            for (const auto &balance : *list) {
                const auto ledger = reports::readLedger(m_shop->connection, party, balance.counterpart, year);
                QVERIFY(ledger);
                const reports::LedgerTotals &totals = ledger->totals;
                QCOMPARE(exact(totals.balance), exact(balance.balance));
                QCOMPARE(exact(totals.carried + totals.charged - totals.settled), exact(totals.balance));
                QCOMPARE(
                    exact(totals.tax),
                    exact(m_shop
                              ->value(u"SELECT total(金額) FROM 入出庫サブ WHERE 商品名 = '消費税' AND ID IN "
                                      "(SELECT ID FROM 入出庫マスター WHERE ifnull(相手先ID, 0) = ? AND 日付 "
                                      "BETWEEN "
                                      "? AND ? AND substr(伝票番号, 1, 1) = ?)"_s,
                                      {balance.counterpart.value_or(0), stored(year.from), stored(year.to),
                                       party == Party::Customer ? u"O"_s : u"I"_s})
                              .toDouble()));
            }
        }
    }

    // Rounded once a slip: those whose prices include it, said so or of a customer who is charged so.
    void taxInPricesIsCountedToo()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 消費税区分) VALUES (1, '内税商店', 2)"_s);
        shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率, 内税) VALUES "
                 "(1, '2026-03-01', 'O1', 1, 10, 1), (2, '2026-03-01', 'O2', 1, 10, NULL), "
                 "(3, '2026-03-02', 'O3', 1, 10, 0), (4, '2026-03-02', 'R4', 1, 10, NULL)"_s);
        shop.run(
            u"INSERT INTO 入出庫サブ (ID, 商品名, 金額, 税区分, 税率) VALUES (1, '茶', 333, NULL, NULL), "
            "(1, '茶', 333, NULL, NULL), (1, '米', 108, 1, 8), (2, '茶', 110, NULL, NULL), "
            "(3, '茶', 100, NULL, NULL), (3, '消費税', 10, NULL, NULL), (4, '入　金', 500, NULL, NULL)"_s);
        const book::Period month{{2026, 3, 1}, {2026, 3, 31}};
        const auto ledger = reports::readLedger(shop.connection, Party::Customer, 1, month);
        QVERIFY(ledger);
        QCOMPARE(ledger->totals.tax, 10);
        QCOMPARE(ledger->totals.included, 60 + 8 + 10);
        const base::Report report = reports::ledgerReport(*ledger, Party::Customer, {}, month);
        QCOMPARE(report.sums.at(2).name + QString::number(report.sums.at(2).value), u"(内 消費税)88"_s);
    }

    void balancesGoByTheSounds()
    {
        FreshShop shop;
        int id = 0;
        for (const QString &reading : {u"ｶﾜｲ"_s, u"ｶﾞﾏ"_s, u"アオキ"_s, u"ｱｲﾀﾞ"_s}) {
            shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, フリガナ) VALUES (?, ?, ?)"_s,
                     {++id, reading, reading});
            shop.run(
                u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (?, '2026-03-01', ?, ?)"_s,
                {id, u"O%1"_s.arg(id), id});
            shop.run(u"INSERT INTO 入出庫サブ (ID, 金額) VALUES (?, 10)"_s, {id});
        }
        const auto list = reports::balanceList(shop.connection, Party::Customer, {2026, 3, 31}, unwatched);
        QVERIFY(list);
        QStringList names;
        for (const auto &balance : *list)
            names << balance.name;
        QCOMPARE(names.join(u' '), u"ｱｲﾀﾞ アオキ ｶﾞﾏ ｶﾜｲ"_s);
    }

    void deletedCounterpartsStayAndComeLastButForNobody()
    {
        const auto list =
            reports::balanceList(m_shop->connection, Party::Customer, GeneratedBook::lastDay, unwatched);
        QVERIFY(list);
        QStringList names;
        for (const auto &balance : *list)
            names << balance.name;
        QCOMPARE(names, u"相手4 相手8 相手12 相手1 相手5 相手9 相手2 相手6 相手10 相手7"_s.split(u' ') +
                            QStringList({u"(削除済み) ID 3"_s, u"(削除済み) ID 11"_s, u"(相手先なし)"_s}));
    }

    // The stock by one statement that knows no walk: the movements after each product's last count.
    void stockOnEveryMonthEnd()
    {
        for (const QDate &end : GeneratedBook::monthEnds()) {
            const auto stock = reports::readStock(m_shop->connection, end, unwatched);
            QVERIFY(stock);
            QStringList found;
            double total = 0;
            for (const auto &line : stock->lines) {
                found << line.product + u'|' + line.specification + u'|' + line.unit + u'|' + line.counted +
                             u'|' + QString::number(std::llround(line.stock * 10));
                total += line.amount;
            }
            QCOMPARE(stock->total, total);
            const QStringList expected = m_shop->rows(
                u"WITH v AS (SELECT 商品名 p, ifnull(規格, '') s, 単位 u, substr(伝票番号, 1, 1) k, 日付 d, "
                "CAST(round(数量 * 10) AS INTEGER) q FROM 入出庫サブ JOIN 入出庫マスター USING (ID) "
                "WHERE 日付 <= ? AND 商品名 <> '消費税'), "
                "c AS (SELECT p, s, u, max(d) d FROM v WHERE k = 'T' GROUP BY p, s, u) "
                "SELECT v.p, v.s, v.u, ifnull(c.d, ''), sum(CASE WHEN k = 'T' AND v.d = c.d THEN q "
                "WHEN k = 'I' AND v.d > ifnull(c.d, '') THEN q WHEN k = 'O' AND v.d > ifnull(c.d, '') THEN "
                "-q "
                "ELSE 0 END) FROM v LEFT JOIN c USING (p, s, u) WHERE k IN ('I', 'O', 'T') "
                "GROUP BY v.p, v.s, v.u ORDER BY 1, 2, 3"_s,
                {stored(end)});
            QCOMPARE(found, expected);
        }
    }

    void stocktakesOfAPeriod()
    {
        const auto report = reports::readDayReport(m_shop->connection, reports::DayReportKind::Stocktakes,
                                                   {{2025, 6, 1}, {2025, 6, 30}});
        QVERIFY(report);
        QStringList found;
        for (const auto &[line, supplier, remark] : report->lines)
            found << line.number + u'|' + supplier + u'|' + QString::number(line.amount);
        QVERIFY(!found.isEmpty());
        QCOMPARE(found,
                 m_shop->rows(u"SELECT 伝票番号, CASE WHEN 相手先ID IS NULL THEN '(相手先なし)' WHEN "
                              u"相手先ID IN (6, 13) THEN '(削除済み) ID ' || 相手先ID "
                              "ELSE '相手' || 相手先ID END, CAST(金額 AS INTEGER) FROM 入出庫サブ l JOIN "
                              "入出庫マスター USING (ID) WHERE 伝票番号 >= 'T' AND 伝票番号 < 'U' AND "
                              "strftime('%Y%m', 日付) = '202506' ORDER BY 日付, ID, l.rowid"_s));
    }

    // What a hundred thousand additions of binary fractions would get wrong.
    void decimalsDoNotDrift()
    {
        FreshShop shop;
        shop.run(
            u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (1, '2026-01-01', 'B1', 7)"_s);
        shop.run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 10000) "
                 "INSERT INTO 入出庫サブ (ID, 金額) SELECT 1, 0.1 FROM n"_s);
        shop.run(u"INSERT INTO 入出庫サブ (ID, 金額) VALUES (1, 800000000000.0001), (1, -800000000000)"_s);
        const book::Period after{{2026, 2, 1}, {2026, 2, 28}};
        const book::Period whole{{2026, 1, 1}, {2026, 1, 31}};
        QCOMPARE(reports::readLedger(shop.connection, Party::Customer, 7, after)->brought, 1000.0001);
        QCOMPARE(reports::readLedger(shop.connection, Party::Customer, 7, whole)->totals.balance, 1000.0001);
        const auto list = reports::balanceList(shop.connection, Party::Customer, after.to, unwatched);
        QCOMPARE(list->front().balance, 1000.0001);
    }

    // Files made by other hands: what is no date is in every balance, and leads no list.
    void oddDatesAreNeverLost()
    {
        FreshShop shop;
        shop.run(
            u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (1, 'abc', 'O1', 7), "
            "(2, x'FF', 'O2', 7), (3, 20260401, 'O3', 7), (4, '2026-02-31', 'R4', 7), (5, NULL, 'O5', 7), "
            "(6, '2026-01-05', 'O6', 7), (7, 'abc', 'T7', 7), (8, '2026-01-05', 'T8', 7), "
            "(9, '2026-01-07 ', 'I9', 7), (10, '2026-01-06', 'I10', 7)"_s);
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 数量, 金額) "
                 "SELECT ID, 'りんご', ID, 1 << ID FROM 入出庫マスター"_s);
        const book::Period january{{2026, 1, 1}, {2026, 1, 31}};
        const auto ledger = reports::readLedger(shop.connection, Party::Customer, 7, january);
        QVERIFY(ledger);
        QCOMPARE(ledger->brought, 2 + 4 + 8 - 16 + 32.0);
        QCOMPARE(ledger->lines.size(), 1u);
        const auto list = reports::balanceList(shop.connection, Party::Customer, january.to, unwatched);
        QCOMPARE(list->front().balance, ledger->totals.balance);
        QCOMPARE(list->front().lastCharged, u"2026-01-05"_s);
        const auto stock = reports::readStock(shop.connection, january.to, unwatched);
        QCOMPARE(stock->lines.front().counted, u"2026-01-05"_s);
        QCOMPARE(stock->lines.front().stocktake, 8.0);
        QCOMPARE(stock->lines.front().in, 10.0); // what has no day came before it was counted
        QCOMPARE(stock->lines.front().out, 0.0);
        const auto stocktakes = reports::readDayReport(shop.connection, reports::DayReportKind::Stocktakes,
                                                       {{1752, 9, 14}, {9999, 12, 31}});
        QCOMPARE(stocktakes->lines.size(), 1u);
        QCOMPARE(stocktakes->undatedLines, 1);
        QCOMPARE(stocktakes->firstUndated, 7);
    }

    void oddAmountsLeaveNoWrongSum_data()
    {
        QTest::addColumn<QString>("amount");
        for (const char *amount : {"'abc'", "'12円'", "x'00'", "1e308", "-1e308", "9e999", "9e11 + 1"})
            QTest::newRow(amount) << QString::fromUtf8(amount);
    }
    void oddAmountsLeaveNoWrongSum()
    {
        QFETCH(QString, amount);
        FreshShop shop;
        shop.run(
            u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (1, '2026-01-05', 'I1', 7), "
            "(2, '2026-01-06', 'P2', 7), (3, '2026-01-05', 'I3', 8), (4, '2026-01-05', 'T4', 8)"_s);
        // A payment of the same does not make it good.
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 数量, 単価, 金額) VALUES (1, 'りんご', %1, 2, %1), "
                 "(2, '支払', NULL, NULL, %1), (3, 'なし', 1, 5, 5), (4, 'みかん', 1, 2, 2)"_s.arg(amount));
        const book::Period january{{2026, 1, 1}, {2026, 1, 31}};
        const book::Period february{{2026, 2, 1}, {2026, 2, 28}};
        for (const book::Period &period : {january, february}) {
            const auto ledger = reports::readLedger(shop.connection, Party::Supplier, 7, period);
            QVERIFY(std::isnan(ledger->totals.balance));
            const auto purchases = reports::purchaseList(shop.connection, period, false, unwatched);
            QVERIFY(std::isnan(purchases->totals.balance()));
            QCOMPARE(purchases->suppliers.back().sums.balance(), 5.0);
        }
        const auto list = reports::balanceList(shop.connection, Party::Supplier, january.to, unwatched);
        QVERIFY(std::isnan(list->front().balance));
        QCOMPARE(list->back().balance, 5.0);
        const base::Report shown = reports::balanceReport(*list, Party::Supplier, january.to, true);
        QCOMPARE(text::formatAmount(shown.totals.back().toDouble()), u"計算不能"_s);
        QVERIFY(std::isnan(balanceOf(shop.connection, Party::Supplier, 7)));
        const auto stock = reports::readStock(shop.connection, january.to, unwatched);
        QVERIFY(std::isnan(stock->total));
    }

    void stoppedListSaysSo()
    {
        const auto list = reports::balanceList(m_shop->connection, Party::Customer, GeneratedBook::lastDay,
                                               [](qint64, qint64) { return false; });
        QVERIFY(!list && list.error().cancelled);
        QVERIFY(!m_shop->connection.inTransaction());
    }

private:
    std::unique_ptr<FreshShop> m_shop;
};

QTEST_GUILESS_MAIN(TestLedger)
#include "tst_ledger.moc"

#include "book/movement_sums.h"
#include "book/movements.h"
#include "book/recent_slips.h"
#include "book/slip_counts.h"
#include "book/slip_move.h"
#include "book/slip_store.h"
#include "support/fresh_shop.h"

#include <QtTest>

#include <sqlite3.h>

#include <functional>

using namespace Qt::StringLiterals;
using book::Days;
using book::Selection;

namespace
{

// What \a read has carried out.
QSet<QByteArray> statementsOf(db::Connection &connection, const std::function<void()> &read)
{
    QSet<QByteArray> statements;
    const auto note = [](unsigned, void *noted, void *statement, void *) {
        static_cast<QSet<QByteArray> *>(noted)->insert(sqlite3_sql(static_cast<sqlite3_stmt *>(statement)));
        return 0;
    };
    sqlite3_trace_v2(connection.handle(), SQLITE_TRACE_STMT, note, &statements);
    read();
    sqlite3_trace_v2(connection.handle(), 0, nullptr, nullptr);
    return statements;
}

// The ways on which SQLite reaches the rows of \a table in \a statements, each once.
QStringList waysInto(const QString &table, const QSet<QByteArray> &statements, db::Connection &connection)
{
    QStringList ways;
    for (const QByteArray &sql : statements) {
        sqlite3_stmt *plan = nullptr;
        sqlite3_prepare_v2(connection.handle(), ("EXPLAIN QUERY PLAN " + sql).constData(), -1, &plan,
                           nullptr);
        while (sqlite3_step(plan) == SQLITE_ROW) {
            // "SEARCH 入出庫サブ USING INDEX 入出庫サブ_ID (ID=?) LEFT-JOIN"
            const QString step =
                QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(plan, 3)));
            if (step.section(u' ', 1, 1) == table)
                ways << step.section(u" LEFT-JOIN"_s, 0, 0).remove(u" COVERING"_s);
        }
        sqlite3_finalize(plan);
    }
    ways.removeDuplicates();
    ways.sort();
    return ways;
}

const QString linesOfSlip = u"SEARCH 入出庫サブ USING INDEX 入出庫サブ_ID (ID=?)"_s;

QString byCounterpart(const QString &terms = {})
{
    return u"SEARCH 入出庫マスター USING INDEX 入出庫マスター_相手先 (相手先ID=? AND 種別=?%1)"_s.arg(terms);
}

QString byKind(const QString &terms = {})
{
    return u"SEARCH 入出庫マスター USING INDEX 入出庫マスター_種別 (種別=?%1)"_s.arg(terms);
}

} // namespace

/// A clerk waits for what is read: of a large book only slips of the wanted kinds, counterpart and days.
class TestQueryPlans : public QObject
{
    Q_OBJECT

private slots:
    void onlyWantedSlipsAreRead_data()
    {
        using Reading = std::function<bool(db::Connection &)>;
        QTest::addColumn<Reading>("read");
        QTest::addColumn<QStringList>("ways");
        const auto take = [](const book::MovementSum &) {};
        const auto sums = [take](const Selection &selection, const book::Grouping &grouping) -> Reading {
            return [=](db::Connection &connection) {
                return bool(book::sumMovements(connection, selection, grouping, base::unwatched, take));
            };
        };
        const auto lines = [](const Selection &selection) -> Reading {
            return [=](db::Connection &connection) { return bool(book::movements(connection, selection)); };
        };
        const QString span = u" AND 日付>? AND 日付<?"_s;
        const book::Period month{{2026, 3, 1}, {2026, 3, 31}};
        const auto customers = book::balanceKindsOf(book::Party::Customer);

        QTest::newRow("a customer's ledger")
            << lines({.kinds = customers, .counterpart = 7, .days = Days::within(month)})
            << QStringList{byCounterpart(span)};
        QTest::newRow("a customer's balance")
            << sums({.kinds = customers, .counterpart = 7, .days = Days::before(month.from)}, {})
            << QStringList{byCounterpart()};
        QTest::newRow("the balance of slips without counterpart")
            << sums({.kinds = customers, .counterpart = book::CounterpartKey()}, {})
            << QStringList{byCounterpart()};
        QTest::newRow("a month's stocktakes")
            << lines({.kinds = {book::stocktake}, .days = Days::within(month)}) << QStringList{byKind(span)};
        QTest::newRow("a month's sums") << sums({.kinds = {book::sale}, .days = Days::within(month)},
                                                {.byCounterpart = true, .byRate = true})
                                        << QStringList{byKind(span)};
        QTest::newRow("slips left open")
            << Reading([](db::Connection &connection) { return bool(book::slipsLeftOpen(connection, 10)); })
            << QStringList{u"SCAN 入出庫マスター USING INDEX 入出庫マスター_未完了"_s};
        QTest::newRow("earlier sales") << Reading([](db::Connection &connection) {
            return bool(book::previousLines(connection, book::sale, 7));
        }) << QStringList{byCounterpart()};
        QTest::newRow("whether a customer has slips") << Reading([customers](db::Connection &connection) {
            return bool(book::countSlips(connection, {.kinds = customers, .counterpart = 7}));
        }) << QStringList{byCounterpart()};
        QTest::newRow("a customer's newest slips") << Reading([](db::Connection &connection) {
            return bool(book::recentSlips(connection, book::Party::Customer, 7, 8));
        }) << QStringList{byCounterpart()};
        QTest::newRow("what a customer buys as a rule") << Reading([](db::Connection &connection) {
            return bool(book::usualGoods(connection, book::sale, 7, 40, 6));
        }) << QStringList{byCounterpart()};
        QTest::newRow("a part of a customer's balance") << Reading([](db::Connection &connection) {
            return bool(book::balancePart(connection, book::Party::Customer, 7, {2026, 3, 1}, {2026, 4, 1}));
        }) << QStringList{byCounterpart(span)};
        QTest::newRow("what is older than a customer's days") << Reading([](db::Connection &connection) {
            return bool(book::balancePart(connection, book::Party::Customer, 7, {}, {2026, 4, 1}));
        }) << QStringList{byCounterpart(u" AND 日付<?"_s), byKind(u" AND 日付=? AND 相手先ID=?"_s)};
        QTest::newRow("a customer's oldest day") << Reading([](db::Connection &connection) {
            return bool(book::oldestDay(connection, book::Party::Customer, 7));
        }) << QStringList{byCounterpart()};
        QTest::newRow("a customer's open slips") << Reading([](db::Connection &connection) {
            return bool(book::openSlipsOf(connection, book::Party::Customer, 7));
        }) << QStringList{byCounterpart()};
        QTest::newRow("slips that go over to another customer") << Reading([](db::Connection &connection) {
            return bool(book::moveSlips(connection, book::Party::Customer, 7, 8, 1));
        }) << QStringList{byCounterpart()};
        QTest::newRow("closed without their tax") << Reading([](db::Connection &connection) {
            return bool(book::slipsWithoutTax(connection, {2026, 3, 1}, 10));
        }) << QStringList{byKind(u" AND 日付>?"_s)};
        QTest::newRow("whether there are slips of a kind") << Reading([](db::Connection &connection) {
            return bool(book::hasSlips(connection, book::estimate));
        }) << QStringList{byKind()};
    }
    void onlyWantedSlipsAreRead()
    {
        QFETCH(std::function<bool(db::Connection &)>, read);
        QFETCH(QStringList, ways);
        FreshShop shop;
        const QSet<QByteArray> own = statementsOf(shop.connection, [&] { QVERIFY(read(shop.connection)); });
        QCOMPARE(waysInto(u"入出庫マスター"_s, own, shop.connection), ways);
        const QStringList ofLines = waysInto(u"入出庫サブ"_s, own, shop.connection);
        QVERIFY2(ofLines.isEmpty() || ofLines == QStringList{linesOfSlip}, qPrintable(ofLines.join(u'\n')));
        // In the order of an index: the newest of a hundred thousand are found without sorting them.
        const QStringList sorted =
            waysInto(u"TEMP"_s, own, shop.connection) + waysInto(u"B-TREE"_s, own, shop.connection);
        const bool isNewest = QByteArray(QTest::currentDataTag()).contains("est ");
        QVERIFY2(!isNewest || sorted.isEmpty(), qPrintable(sorted.join(u'\n')));
    }

    // The whole book is read in slices of days.
    void slicesAreReadByKindAndDay()
    {
        FreshShop shop;
        shop.run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 9000) "
                 "INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) "
                 "SELECT i, date('2020-01-01', (i / 10) || ' days'), 'O' || i, 1 FROM n"_s);
        const Selection selection{.kinds = {book::sale, book::purchase}, .days = Days::upTo({2026, 3, 31})};
        const QSet<QByteArray> own = statementsOf(shop.connection, [&] {
            QVERIFY(
                book::visitGoodsMovements(shop.connection, selection, base::unwatched, [](const auto &) {}));
        });
        QStringList ways = waysInto(u"入出庫マスター"_s, own, shop.connection);
        ways.removeIf( // the cutting of the slices
            [](const QString &way) { return !way.contains(u"種別"_s); });
        QCOMPARE(ways, QStringList({byKind(u" AND 日付=?"_s), byKind(u" AND 日付>? AND 日付<?"_s),
                                    byKind(u" AND 日付>?"_s)}));
    }
};

QTEST_GUILESS_MAIN(TestQueryPlans)
#include "tst_query_plans.moc"

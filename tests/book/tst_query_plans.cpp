// What is asked of the slips is answered from the index that fits it: only the rows of the wanted kinds,
// counterparts and days are read.
#include "book/slip_selection.h"
#include "support/fresh_shop.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestQueryPlans : public QObject
{
    Q_OBJECT

private slots:
    void slipsComeFromAnIndex_data();
    void slipsComeFromAnIndex();
};

void TestQueryPlans::slipsComeFromAnIndex_data()
{
    QTest::addColumn<book::Selection>("selection");
    QTest::addColumn<QString>("steps");
    const auto row = [](const char *name, const book::Selection &selection, const QString &steps) {
        QTest::newRow(name) << selection << steps;
    };
    const book::Days april{.from = QDate(2026, 4, 1), .to = QDate(2026, 4, 30)};
    row("whether there are any", {.kinds = {book::sale}}, u"入出庫マスター_種別 (種別=?)"_s);
    row("a month", {.kinds = book::kindsOf(book::Party::Customer), .days = april},
        u"入出庫マスター_種別 (種別=? AND 日付>? AND 日付<?)"_s);
    row("a customer", {.kinds = book::kindsOf(book::Party::Customer), .counterpart = book::CounterpartKey(5)},
        u"入出庫マスター_相手先 (相手先ID=? AND 種別=?)"_s);
    row("a customer's month", {.kinds = {book::sale}, .counterpart = book::CounterpartKey(5), .days = april},
        u"入出庫マスター_相手先 (相手先ID=? AND 種別=? AND 日付>? AND 日付<?)"_s);
    row("slips of nobody", {.kinds = {book::sale}, .counterpart = book::CounterpartKey()},
        u"入出庫マスター_相手先 (相手先ID=? AND 種別=?)"_s);
}

void TestQueryPlans::slipsComeFromAnIndex()
{
    QFETCH(book::Selection, selection);
    QFETCH(QString, steps);
    FreshShop shop;
    const book::Condition condition = book::slipsOf(selection);
    const auto plan = shop.connection.select(
        u"EXPLAIN QUERY PLAN SELECT ID FROM 入出庫マスター WHERE "_s + condition.sql, condition.values);
    QVERIFY(bool(plan));
    QCOMPARE(plan->count(), 1);
    const QString step = plan->rows.front().back().toString();
    QVERIFY2(step.startsWith(u"SEARCH 入出庫マスター USING "_s) && step.endsWith(u"INDEX "_s + steps),
             qPrintable(step));
}

QTEST_MAIN(TestQueryPlans)
#include "tst_query_plans.moc"

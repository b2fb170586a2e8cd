#include "bill_book.h"

#include "reports/bills/bill.h"
#include "reports/bills/bill_invoice_words.h"
#include "reports/bills/bill_list.h"
#include "reports/bills/bill_paper.h"
#include "reports/bills/bill_run.h"
#include "reports/bills/closing_period.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using book::Period;
using reports::Bill;
using reports::BillOptions;

namespace
{

const Period april{{2026, 4, 1}, {2026, 4, 30}};
const BillOptions tenByHand{10.0};
const BillOptions byTable;

QString number(double yen) { return QString::number(yen, 'g', 15); }

// "P S R 今回 税別 消費税 繰越 未計上"
QString shown(const reports::BillSums &sums)
{
    QStringList words;
    for (const double yen : {sums.previous, sums.sales, sums.received, sums.billed(false), sums.untaxed,
                             sums.tax(), sums.carried()})
        words << number(yen);
    words << (sums.unbooked ? number(*sums.unbooked) : sums.cannotTax ? u"?"_s : u"-"_s);
    return words.join(u' ');
}

// "りんご+1000=1000" a delivery, "-500=500" a receipt, "繰越=1000" what is carried.
QString shownRows(const Bill &bill)
{
    QStringList words;
    for (const reports::BillRow &row : bill.rows) {
        const QString amount = row.delivered  ? u'+' + number(*row.delivered)
                               : row.received ? u'-' + number(*row.received)
                                              : QString();
        words << row.name + row.mark + amount + u'=' + number(row.balance);
    }
    return words.join(u' ');
}

QString shownRates(const Bill &bill)
{
    QStringList words;
    for (const slips::InvoiceRate &rate : bill.rates)
        words << rate.name + u' ' + number(rate.amount) + u' ' + number(rate.tax);
    return words.join(u'/');
}

} // namespace

class TestBill : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_shop = std::make_unique<FreshShop>(); }
    // Each test's slips are rolled back.
    void init() { m_shop->run(u"BEGIN"_s); }
    void cleanup() { m_shop->run(u"ROLLBACK"_s); }

    void sums_data();
    void sums();
    void doubts_data();
    void doubts();
    void rates_data();
    void rates();
    void refusals();
    void closingPeriods_data();
    void closingPeriods();
    void ages_data();
    void ages();
    void lists();

private:
    Bill billOf(const BillOptions &options)
    {
        const auto bill = reports::billOf(m_shop->connection, 1, april, options);
        return bill ? *bill : Bill();
    }

    std::unique_ptr<FreshShop> m_shop;
};

void TestBill::sums_data()
{
    QTest::addColumn<int>("taxClass");
    QTest::addColumn<QStringList>("slips");
    QTest::addColumn<QString>("sums");
    QTest::addColumn<QString>("rows");
    const auto row = [](const char *name, int taxClass, const QStringList &slips, const QString &sums,
                        const QString &rows) { QTest::newRow(name) << taxClass << slips << sums << rows; };
    row("only before", 0, {u"O 2026-03-31 1000 消費税=100"_s}, u"1100 0 0 1100 0 0 1100 -"_s, u"繰越=1100"_s);
    row("nothing owed before", 0, {u"O 2026-03-01 500"_s, u"R 2026-03-31 500"_s, u"O 2026-04-01 200"_s},
        u"0 200 0 200 200 0 0 -"_s, u"りんご+200=200"_s);
    row("paid too much", 0, {u"O 2026-03-01 500"_s, u"R 2026-04-10 800"_s}, u"500 0 800 -300 0 0 -300 -"_s,
        u"繰越=500 りんご-800=-300"_s);
    row("first and last day", 0,
        {u"O 2026-03-31 1"_s, u"O 2026-04-01 10"_s, u"R 2026-04-30 5"_s, u"O 2026-04-30 100"_s,
         u"O 2026-05-01 1000"_s},
        u"1 110 5 106 110 0 -4 -"_s, u"繰越=1 りんご+10=11 りんご-5=6 りんご+100=106"_s);
    row("order of days, not of entry", 0, {u"O 2026-04-20 3"_s, u"R 2026-04-10 2"_s}, u"0 3 2 1 3 0 -2 -"_s,
        u"りんご-2=-2 りんご+3=1"_s);
    row("carried within it", 0, {u"O 2026-04-01 100"_s, u"B 2026-04-02 700 50"_s, u"O 2026-04-03 10"_s},
        u"750 110 0 860 110 0 750 -"_s, u"りんご+100=100 繰越=850 りんご+10=860"_s);
    row("carried before it", 0, {u"B 2026-03-15 700"_s}, u"700 0 0 700 0 0 700 -"_s, u"繰越=700"_s);
    row("tax booked with the goods", 0, {u"O 2026-04-01 1000 消費税=100"_s}, u"0 1100 0 1100 1000 100 0 -"_s,
        u"りんご+1000=1000 消費税+100=1100"_s);
    row("no day, and other kinds", 0,
        {u"O - 1000"_s, u"R 2026-04-31 30"_s, u"M 2026-04-01 9"_s, u"I 2026-04-01 9"_s, u"P 2026-04-01 9"_s},
        u"970 0 0 970 0 0 970 -"_s, u"繰越=970"_s);
    row("tax named on a receipt", 0, {u"R 2026-04-01 消費税=50"_s}, u"0 0 50 -50 0 0 -50 -"_s,
        u"消費税-50=-50"_s);
    row("tenths", 0, QStringList(3, u"O 2026-04-01 0.1"_s), u"0 0.3 0 0.3 0.3 0 0 -"_s,
        u"りんご+0.1=0.1 りんご+0.1=0.2 りんご+0.1=0.3"_s);
    const QString apple = u"りんご+12345=12345"_s;
    row("on the bill", 1, {u"O 2026-04-01 12345"_s}, u"0 12345 0 12345 12345 0 0 1234"_s, apple);
    row("on the bill: saved at 5", 1, {u"O 2026-04-01 12345 @5"_s}, u"0 12345 0 12345 12345 0 0 1234"_s,
        apple);
    row("on the bill: nothing sold", 1, {u"R 2026-04-01 5"_s}, u"0 0 5 -5 0 0 -5 0"_s, u"りんご-5=-5"_s);
    row("on the bill: given back", 1, {u"O 2026-04-01 -12345"_s}, u"0 -12345 0 -12345 -12345 0 0 -1234"_s,
        u"りんご+-12345=-12345"_s);
    row("on the bill: booked", 1, {u"O 2026-04-01 12345"_s, u"O 2026-04-30 消費税=1234"_s},
        u"0 13579 0 13579 12345 1234 0 -"_s, u"りんご+12345=12345 消費税+1234=13579"_s);
    row("on the bill: booked and reversed", 1,
        {u"O 2026-04-01 12345"_s, u"O 2026-04-30 消費税=1234"_s, u"O 2026-04-30 消費税=-1234 @5"_s},
        u"0 12345 0 12345 12345 0 0 1234"_s, u"りんご+12345=12345 消費税+1234=13579 消費税+-1234=12345"_s);
    row("on the bill: not taxed", 1, {u"O 2026-04-01 12345 非:900"_s}, u"0 13245 0 13245 13245 0 0 1234"_s,
        u"りんご+12345=12345 りんご+900=13245"_s);
    row("on the bill: two rates", 1, {u"O 2026-04-01 109 8*:112 8*:112"_s, u"O 2026-04-02 109"_s},
        u"0 442 0 442 442 0 0 38"_s, u"りんご+109=109 りんご※+112=221 りんご※+112=333 りんご+109=442"_s);
    row("on the bill: one rate by hand is one for food", 1, {u"O 2026-04-01 109 10*:111"_s},
        u"0 220 0 220 220 0 0 22"_s, u"りんご+109=109 りんご※+111=220"_s);
    row("on the bill: slips of two rates", 1, {u"O 2026-04-01 109 @8"_s, u"O 2026-04-02 109"_s},
        u"0 218 0 218 218 0 0 18"_s, u"りんご+109=109 りんご+109=218"_s);
    row("on the bill: the price includes it", 1, {u"O 2026-04-01 内 1100"_s, u"O 2026-04-02 105"_s},
        u"0 1205 0 1205 1205 0 0 10"_s, u"りんご+1100=1100 りんご+105=1205"_s);
    row("included", 2, {u"O 2026-04-01 1000"_s}, u"0 1000 0 1000 1000 0 0 -"_s, u"りんご+1000=1000"_s);
}

void TestBill::sums()
{
    QFETCH(int, taxClass);
    QFETCH(QStringList, slips);
    QFETCH(QString, sums);
    QFETCH(QString, rows);
    writeCustomer(*m_shop, 1, taxClass, 31);
    for (int i = 0; i < slips.size(); ++i)
        writeSlip(*m_shop, i + 1, slips.at(i));
    const Bill bill = billOf(tenByHand);
    QCOMPARE(shown(bill.sums), sums);
    QCOMPARE(shownRows(bill), rows);
    QCOMPARE(bill.sums.billed(true), bill.sums.sales);
    QCOMPARE(bill.rows.empty() ? 0 : bill.rows.back().balance, bill.sums.billed(false));
    for (const std::optional<int> closingDay : {std::optional<int>(0), std::optional<int>()}) {
        const auto list =
            reports::billsOf(m_shop->connection, {april, closingDay}, tenByHand, base::unwatched);
        QVERIFY(list);
        QCOMPARE(shown(list->front().sums), sums);
        QCOMPARE(list->front().hasSlipsInPeriod, bill.hasSlipsInPeriod);
    }
}

// What is not right with the tax when the bill is to go out.
void TestBill::doubts_data()
{
    QTest::addColumn<int>("taxClass");
    QTest::addColumn<QStringList>("slips");
    QTest::addColumn<QString>("doubt"); // a part of it
    const auto row = [](const char *name, int taxClass, const QStringList &slips, const QString &doubt) {
        QTest::newRow(name) << taxClass << slips << doubt;
    };
    const QString none;
    row("booked", 1, {u"O 2026-04-01 2332 8*:666"_s, u"O 2026-04-30 10:消費税=233 8*:消費税=53"_s}, none);
    row("a slip came late", 1,
        {u"O 2026-04-01 2332 8*:666"_s, u"O 2026-04-30 10:消費税=233 8*:消費税=53"_s,
         u"O 2026-04-20 10000"_s},
        u"286 円が、期間の売上から計算した消費税 1,286 円"_s);
    row("typed", 1, {u"O 2026-04-01 5000"_s, u"O 2026-04-30 消費税=9999"_s}, u"9,999 円が"_s);
    row("booked at the former rate", 1, {u"O 2026-04-01 1000 @8"_s, u"O 2026-04-30 消費税=80 @8"_s}, none);
    row("not booked", 1, {u"O 2026-04-01 5000"_s}, none); // is asked about by itself
    row("no tax line", 0, {u"O 2026-04-01 5000"_s, u"O 2026-04-02 100 消費税=10"_s, u"O 2026-04-03 70"_s},
        u"（O1、O3）"_s);
    row("before the period", 0, {u"O 2026-03-31 5000"_s}, none);
    row("of a tax of nothing", 0, {u"O 2026-04-01 9"_s, u"O 2026-04-02 非:5000"_s}, none);
    row("a receipt", 0, {u"R 2026-04-01 5000"_s}, none);
    row("included", 2, {u"O 2026-04-01 内 5000"_s}, none);
    row("many", 0, QStringList(7, u"O 2026-04-01 5000"_s), u"O5 ほか 2 件"_s);
}

void TestBill::doubts()
{
    QFETCH(int, taxClass);
    QFETCH(QStringList, slips);
    QFETCH(QString, doubt);
    writeCustomer(*m_shop, 1, taxClass);
    for (int i = 0; i < slips.size(); ++i)
        writeSlip(*m_shop, i + 1, slips.at(i));
    m_shop->run(u"UPDATE 入出庫マスター SET 内税 = 0 WHERE 内税 IS NULL"_s);
    const Bill bill = billOf(tenByHand);
    const QString told = taxDoubt(bill);
    QVERIFY2(doubt.isEmpty() ? told.isEmpty() : told.contains(doubt), qPrintable(told));
    reports::BillPaper paper;
    paper.bill = bill;
    QCOMPARE(bearsRates(paper), doubt.isEmpty() && bill.sums.unbooked.value_or(0) == 0);
    // One that is doubtful does not go out among many.
    const auto list = reports::billsOf(m_shop->connection, {april, 0}, tenByHand, base::unwatched);
    QVERIFY(list);
    int issued = 0;
    const auto issue = [&issued](const Bill &) {
        ++issued;
        return base::Status();
    };
    const auto outcome = reports::issueBills(m_shop->connection, *list, tenByHand, issue, base::unwatched);
    QCOMPARE(issued, doubt.isEmpty() ? int(list->size()) : 0);
    QCOMPARE(outcome.doubtful.size(), std::size_t(doubt.isEmpty() ? 0 : 1));
}

void TestBill::rates_data()
{
    QTest::addColumn<int>("taxClass");
    QTest::addColumn<bool>("includedOnBill");
    QTest::addColumn<QStringList>("slips");
    QTest::addColumn<QString>("rates");
    const auto row = [](const char *name, int taxClass, bool includedOnBill, const QStringList &slips,
                        const QString &rates) {
        QTest::newRow(name) << taxClass << includedOnBill << slips << rates;
    };
    const QStringList notes{u"O 2026-04-01 8*:1999 8*:消費税=159"_s, u"O 2026-04-02 8*:2345 8*:消費税=187"_s,
                            u"O 2026-04-03 8*:678 8*:消費税=54"_s};
    row("booked on the notes, never computed anew", 0, false, notes, u"軽減8% 5022 400"_s);
    row("the same on the bill", 1, false,
        {u"O 2026-04-01 8*:1999"_s, u"O 2026-04-02 8*:2345"_s, u"O 2026-04-03 8*:678"_s},
        u"軽減8% 5022 401"_s);
    row("booked for the bill", 1, false,
        {u"O 2026-04-01 8*:5022 109"_s, u"O 2026-04-30 8*:消費税=401 消費税=10"_s},
        u"10% 109 10/軽減8% 5022 401"_s);
    row("nothing of before, received or carried", 1, false,
        {u"O 2026-03-01 900"_s, u"R 2026-04-01 500"_s, u"B 2026-04-02 70"_s, u"O 2026-04-03 12345 @8"_s,
         u"O 2026-04-03 3000"_s},
        u"8% 12345 987/10% 3000 300"_s);
    row("given back at its old rate", 0, false,
        {u"O 2026-04-01 1000 消費税=100"_s, u"O 2026-04-02 8:-3333 8:消費税=-266"_s},
        u"8% -3333 -266/10% 1000 100"_s);
    const QStringList gross{u"O 2026-04-01 内 8*:1000"_s, u"O 2026-04-02 内 8*:1000 550"_s};
    row("included, each note rounded", 2, false, gross, u"10%税込 550 50/軽減8%税込 2000 148"_s);
    row("included, the bill is the invoice", 2, true, {u"O 2026-04-01 8*:1006"_s, u"O 2026-04-02 8*:1006"_s},
        u"軽減8%税込 2012 149"_s);
    row("the same by notes", 2, false, {u"O 2026-04-01 8*:1006"_s, u"O 2026-04-02 8*:1006"_s},
        u"軽減8%税込 2012 148"_s);
    row("not taxed", 0, false, {u"O 2026-04-01 非:300 100 消費税=10"_s}, u"10% 100 10/非課税 300 0"_s);
    row("no rate", 0, false, {u"O 2026-04-01 300 @"_s}, u""_s);
    row("no rate, and taxed on the bill", 1, false, {u"O 2026-04-01 300 @"_s}, u""_s);
}

void TestBill::rates()
{
    QFETCH(int, taxClass);
    QFETCH(bool, includedOnBill);
    QFETCH(QStringList, slips);
    QFETCH(QString, rates);
    writeCustomer(*m_shop, 1, taxClass);
    for (int i = 0; i < slips.size(); ++i)
        writeSlip(*m_shop, i + 1, slips.at(i));
    const Bill bill = billOf({{}, includedOnBill});
    QCOMPARE(shownRates(bill), rates);
    QCOMPARE(bill.reducedLegend.isEmpty(), !slips.join(u' ').contains(u'*'));
    if (taxClass == 1 && rates.isEmpty())
        QVERIFY(bill.sums.cannotTax && !bill.sums.unbooked);
}

void TestBill::refusals()
{
    FreshShop &shop = *m_shop;
    const auto gone = reports::billOf(shop.connection, 1, april, byTable);
    QVERIFY(!gone && gone.error().gone);
    writeCustomer(shop, 1, 1);
    QVERIFY(!reports::billOf(shop.connection, 1, {april.to, april.from}, byTable));
    QVERIFY(!reports::billsOf(shop.connection, {{april.to, april.from}}, byTable, base::unwatched));
    QVERIFY(!reports::billsOf(shop.connection, {april, 0}, byTable, [](qint64, qint64) { return false; }));
    QVERIFY(!billOf(byTable).hasSlips);
    writeSlip(shop, 1, u"O 2026-05-01 7"_s);
    QVERIFY(billOf(byTable).hasSlips);
    QVERIFY(!billOf(byTable).hasSlipsInPeriod);
    writeSlip(shop, 2, u"O 2026-04-01 1000 @8"_s);
    writeSlip(shop, 3, u"O 2026-04-02 消費税=0 @8"_s);
    QCOMPARE(billOf(tenByHand).outdatedRate, std::optional(8.0));
    QCOMPARE(billOf({8.0}).outdatedRate, std::optional<double>());
    QCOMPARE(billOf(byTable).noteNumbers, QStringList{u"O2"_s});
    shop.run(u"UPDATE 入出庫サブ SET 金額 = 'たくさん' WHERE ID = 2"_s);
    const Bill broken = billOf(tenByHand);
    QVERIFY(broken.sums.cannotTax && std::isnan(broken.sums.sales) && broken.rates.empty());
}

void TestBill::closingPeriods_data()
{
    QTest::addColumn<int>("closingDay");
    QTest::addColumn<QString>("today");
    QTest::addColumn<QString>("period");
    const auto row = [](int closingDay, const QString &today, const QString &period) {
        QTest::addRow("%d on %s", closingDay, qPrintable(today)) << closingDay << today << period;
    };
    row(0, u"2026-04-01"_s, u"2026-03-01 2026-03-31"_s);
    row(0, u"2026-04-30"_s, u"2026-04-01 2026-04-30"_s);
    row(31, u"2026-03-15"_s, u"2026-02-01 2026-02-28"_s);
    row(99, u"2024-03-01"_s, u"2024-02-01 2024-02-29"_s);
    row(-1, u"2026-01-01"_s, u"2025-12-01 2025-12-31"_s);
    row(20, u"2026-04-19"_s, u"2026-02-21 2026-03-20"_s);
    row(20, u"2026-04-20"_s, u"2026-03-21 2026-04-20"_s);
    row(29, u"2026-02-28"_s, u"2026-01-30 2026-02-28"_s);
    row(30, u"2026-03-30"_s, u"2026-03-01 2026-03-30"_s);
    row(30, u"2024-03-01"_s, u"2024-01-31 2024-02-29"_s);
    row(30, u"2026-04-29"_s, u"2026-03-01 2026-03-30"_s);
}

void TestBill::closingPeriods()
{
    QFETCH(int, closingDay);
    QFETCH(QString, today);
    QFETCH(QString, period);
    const Period found = reports::closingPeriod(closingDay, QDate::fromString(today, Qt::ISODate));
    QCOMPARE(found.from.toString(Qt::ISODate) + u' ' + found.to.toString(Qt::ISODate), period);
}

void TestBill::ages_data()
{
    QTest::addColumn<QStringList>("slips");
    QTest::addColumn<QString>("ages");
    QTest::newRow("oldest first") << QStringList{u"O 2026-01-01 100"_s, u"O 2026-03-01 20"_s,
                                                 u"O 2026-04-01 3"_s, u"R 2026-04-02 110"_s}
                                  << u"3 10 0 2026-04-01 2026-04-02"_s;
    QTest::newRow("older left") << QStringList{u"O 2026-01-01 100"_s, u"O 2026-03-31 20"_s,
                                               u"R 2026-03-05 10"_s, u"B 2026-04-02 7"_s}
                                << u"0 20 97 2026-03-31 2026-03-05"_s;
    QTest::newRow("all paid, and more")
        << QStringList{u"O 2026-04-01 100"_s, u"R 2026-04-01 101"_s} << u"0 0 0 2026-04-01 2026-04-01"_s;
    QTest::newRow("given back") << QStringList{u"O 2026-03-01 100"_s, u"O 2026-04-01 -30"_s}
                                << u"0 70 0 2026-04-01 "_s;
    QTest::newRow("no day") << QStringList{u"O - 100"_s} << u"0 0 100  "_s;
}

void TestBill::ages()
{
    QFETCH(QStringList, slips);
    QFETCH(QString, ages);
    writeCustomer(*m_shop, 1, 0);
    for (int i = 0; i < slips.size(); ++i)
        writeSlip(*m_shop, i + 1, slips.at(i));
    const auto list = reports::billsOf(m_shop->connection, {april, {}, true}, tenByHand, base::unwatched);
    QVERIFY(list);
    const reports::CustomerBill &bill = list->front();
    QCOMPARE((QStringList{number(bill.unpaid.thisPeriod), number(bill.unpaid.lastPeriod),
                          number(bill.unpaid.older), bill.lastSale, bill.lastReceipt}
                  .join(u' ')),
             ages);
}

void TestBill::lists()
{
    FreshShop &shop = *m_shop;
    const QVariantList closingDays{0, 20, 31, QVariant(), 99, 20};
    for (int id = 1; id <= closingDays.size(); ++id)
        writeCustomer(shop, id, 0, closingDays.at(id - 1));
    shop.run(u"UPDATE 納品先 SET 更新日 = '2026-04-0' || 納品先ID"_s);
    writeSlip(shop, 1, u"O 2026-04-01 100"_s, 3);
    writeSlip(shop, 2, u"O 2026-04-01 100"_s, 98);
    writeSlip(shop, 3, u"R 2026-04-01 100"_s, QVariant());
    writeSlip(shop, 4, u"I 2026-04-01 100"_s, 97); // a supplier's
    const auto names = [&shop](std::optional<int> closingDay, bool withIdle) {
        QStringList found;
        const auto list =
            reports::billsOf(shop.connection, {april, closingDay, false, withIdle}, byTable, base::unwatched);
        for (const reports::CustomerBill &bill : *list)
            found << (bill.customer.unknown ? bill.customer.name() : QString::number(*bill.customer.id));
        return found.join(u' ');
    };
    QCOMPARE(names(20, true), u"6 2"_s);
    QCOMPARE(names(99, true), u"5 4 3 1"_s);
    QCOMPARE(names(0, false), u"3"_s);
    QCOMPARE(names(7, true), QString());
    QCOMPARE(names({}, false), u"3 (削除済み) ID 98 (相手先なし)"_s);
    QCOMPARE(names({}, true), u"6 5 4 3 2 1 (削除済み) ID 98 (相手先なし)"_s);
}

QTEST_GUILESS_MAIN(TestBill)
#include "tst_bill.moc"

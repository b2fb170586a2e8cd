#include "bill_book.h"

#include "book/generated_book.h"

#include "printing/list_sheet.h"
#include "reports/bills/bill.h"
#include "reports/bills/closing_period.h"
#include "reports/bills/monthly_bills.h"
#include "text/format_value.h"

#include <QtTest>

#include <cmath>

using namespace Qt::StringLiterals;
using book::Period;
using reports::CustomerBill;
using reports::MonthlyBillsQuery;

namespace
{

const Period april{{2026, 4, 1}, {2026, 4, 30}};
const reports::BillOptions byTable;

std::vector<CustomerBill> billsOf(FreshShop &shop, const MonthlyBillsQuery &query)
{
    const auto bills = reports::monthlyBills(shop.connection, query, byTable, base::unwatched);
    return bills ? *bills : std::vector<CustomerBill>();
}

QString shown(const base::Report &report, const QVariantList &values)
{
    QStringList cells;
    for (qsizetype i = 1; i < values.size(); ++i) // without the codes
        cells << text::formatValue(report.columns.at(static_cast<std::size_t>(i)).format, values.at(i));
    return cells.join(u'|');
}

} // namespace

class TestMonthlyBills : public QObject
{
    Q_OBJECT

private slots:
    // 9 owes of three ages, 8 has paid, 7 has paid too much, 6 did nothing, 77 was deleted.
    void init()
    {
        m_shop = std::make_unique<FreshShop>();
        FreshShop &shop = *m_shop;
        shop.run(u"BEGIN"_s);
        for (const int id : {6, 7, 8, 9})
            writeCustomer(shop, id, id == 9 ? 1 : 0, id == 9 ? 20 : 0);
        writeSlip(shop, 1, u"O 2026-04-21 3000"_s, 9);
        writeSlip(shop, 2, u"O 2026-04-20 1000 8*:500"_s, 9);
        writeSlip(shop, 3, u"O 2026-03-20 2000"_s, 9);
        writeSlip(shop, 4, u"B 2025-12-31 繰越残高=4000"_s, 9);
        writeSlip(shop, 5, u"R 2026-04-02 入金=1500"_s, 9);
        writeSlip(shop, 6, u"O 2026-04-10 700 消費税=70"_s, 8);
        writeSlip(shop, 7, u"R 2026-04-30 入金=770"_s, 8);
        writeSlip(shop, 8, u"R 2026-04-15 入金=100"_s, 7);
        writeSlip(shop, 9, u"O 2026-04-15 50"_s, 77);
        writeSlip(shop, 10, u"O - 60"_s, QVariant());
        shop.run(u"COMMIT"_s);
    }

    void rowsAndTotals()
    {
        const MonthlyBillsQuery query{april};
        const base::Report report = reports::monthlyBillsReport(billsOf(*m_shop, query), query);
        QStringList rows;
        for (const base::ReportRow &row : report.rows)
            rows << shown(report, row.values);
        rows << shown(report, report.totals);
        QCOMPARE(rows.join(u'\n'),
                 u"山田商店9|6,000|1,500|4,500|4,500|0|4,500|9,000|440|4,500|2,000|2,500|2026/04/02\n"
                 "(削除済み) ID 77|0|0|0|50|0|50|50||50|0|0|\n"
                 "(相手先なし)|60|0|60|0|0|0|60||0|0|60|\n"
                 "山田商店8|0|770|-770|700|70|770|0||0|0|0|2026/04/30\n"
                 "山田商店7|0|100|-100|0|0|0|-100||0|0|0|2026/04/15\n"
                 "合計|6,060|2,370|3,690|5,250|70|5,320|9,010|440|4,550|2,000|2,560|"_s);
        QStringList sums;
        for (const base::NamedSum &sum : report.sums)
            sums << sum.name + u' ' + text::formatValue(sum.format, sum.value);
        QCOMPARE(sums.join(u'|'), u"入金額 2,370|売上金額（税込) 5,320|今回請求額 9,010|未収 今回分 4,550|"
                                  "未収 前月分 2,000|未収 それ以前 2,560"_s);
        QCOMPARE(report.remark, u"期間　2026/04/01～2026/04/30"_s);
        QCOMPARE(report.rows[0].link.value<reports::BillTarget>().customer, book::CounterpartKey(9));
        QVERIFY(report.rows[1].link.value<reports::BillTarget>().unknown);
        const MonthlyBillsQuery all{april, false, true};
        QCOMPARE(billsOf(*m_shop, all).size(), 6u);
    }

    // Each row is what the customer's own bill says.
    void rowsAreTheBills_data()
    {
        QTest::addColumn<bool>("ownPeriods");
        QTest::newRow("one period") << false;
        QTest::newRow("their own") << true;
    }
    void rowsAreTheBills()
    {
        QFETCH(const bool, ownPeriods);
        FreshShop shop;
        GeneratedBook::writeTo(shop);
        shop.run(u"UPDATE 納品先 SET 締め日 = 納品先ID * 5 % 35"_s);
        const Period month{{2025, 10, 1}, {2025, 10, 31}};
        const auto bills = billsOf(shop, {month, ownPeriods, true});
        double balances = 0;
        int registered = 0;
        for (const CustomerBill &row : bills) {
            balances += row.sums.balance();
            if (row.customer.unknown)
                continue;
            ++registered;
            const int day = reports::closingDayFrom(static_cast<int>(*row.customer.id * 5 % 35));
            const Period period = ownPeriods ? reports::closingPeriod(day, month.to) : month;
            const auto bill = reports::billOf(shop.connection, *row.customer.id, period, byTable);
            QVERIFY(bill);
            QCOMPARE(row.period.from, period.from);
            QCOMPARE(row.period.to, period.to);
            for (const auto member : {&reports::BillSums::previous, &reports::BillSums::sales,
                                      &reports::BillSums::received, &reports::BillSums::untaxed})
                QCOMPARE(row.sums.*member, bill->sums.*member);
            QCOMPARE(row.sums.unbooked, bill->sums.unbooked);
            QCOMPARE(row.unpaid.thisPeriod + row.unpaid.lastPeriod + row.unpaid.older,
                     std::max(row.sums.balance(), 0.0));
        }
        QCOMPARE(registered, shop.value(u"SELECT COUNT(*) FROM 納品先"_s).toInt());
        QVERIFY(bills.size() > static_cast<std::size_t>(registered)); // deleted ones are not lost
        const auto owes = [](const CustomerBill &bill) { return bill.sums.balance() > 0; };
        QVERIFY(std::ranges::is_partitioned(bills, owes));
        if (!ownPeriods)
            QCOMPARE(std::llround(balances * 100),
                     shop.value(u"SELECT CAST(round(sum(CASE substr(伝票番号, 1, 1) WHEN 'R' THEN -金額 "
                                "ELSE 金額 END) * 100) AS INTEGER) FROM 入出庫サブ JOIN 入出庫マスター "
                                "USING (ID) WHERE substr(伝票番号, 1, 1) IN ('O', 'R', 'B') AND "
                                "(日付 IS NULL OR 日付 <= '2025-10-31')"_s)
                         .toLongLong());
    }

    void ownPeriodsEndByTheDay()
    {
        const MonthlyBillsQuery query{{{2026, 4, 1}, {2026, 4, 25}}, true};
        const base::Report report = reports::monthlyBillsReport(billsOf(*m_shop, query), query);
        QCOMPARE(shown(report, report.rows[0].values), u"山田商店9|6,000|1,500|4,500|1,500|0|1,500|6,000|140|"
                                                       "1,500|2,000|2,500|2026/04/02|2026/04/20"_s);
        for (const base::ReportRow &row : report.rows) // all others' month has not ended yet
            QVERIFY(row.values.last() == u"2026-04-20"_s || row.values.last() == u"2026-03-31"_s);
        QCOMPARE(report.columns.back().heading, u"締め日"_s);
    }

    void refusals()
    {
        const auto reversed =
            reports::monthlyBills(m_shop->connection, {{april.to, april.from}}, byTable, base::unwatched);
        QCOMPARE(reversed.error().text,
                 u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s);
        const auto stopped = reports::monthlyBills(m_shop->connection, {april, true}, byTable,
                                                   [](qint64, qint64) { return false; });
        QVERIFY(!stopped && stopped.error().cancelled);
        QVERIFY(!m_shop->connection.inTransaction());
        // An amount that is none is looked at first, and leaves no sum.
        m_shop->run(u"UPDATE 入出庫サブ SET 金額 = 'abc' WHERE ID = 8"_s);
        const MonthlyBillsQuery query{april};
        const base::Report report = reports::monthlyBillsReport(billsOf(*m_shop, query), query);
        QVERIFY(std::isnan(report.totals.at(8).toDouble()));
        QVERIFY(shown(report, report.rows[1].values).startsWith(u"山田商店7|0|計算不能"_s));
    }

    void fitsOnLyingPaper()
    {
        const MonthlyBillsQuery query{april, true};
        const base::Report report = reports::monthlyBillsReport(billsOf(*m_shop, query), query);
        const auto sheets = printing::listSheets(report, {}, printing::paperFor(report));
        const printing::Sheet sheet = sheets.front();
        QVERIFY(sheet.readWidth() > sheet.readHeight());
        for (const printing::TextItem &item : sheet.texts)
            QVERIFY2(item.points > 6.5, qPrintable(item.text));
    }

private:
    std::unique_ptr<FreshShop> m_shop;
};

QTEST_GUILESS_MAIN(TestMonthlyBills)
#include "tst_monthly_bills.moc"

#include "book/generated_book.h"

#include "reports/bills/bill.h"
#include "reports/bills/bill_list.h"

#include <QtTest>

#include <cmath>
#include <map>

using namespace Qt::StringLiterals;
using reports::Bill;

namespace
{

constexpr qint64 perYen = 10000; // amounts are recalculated in ten-thousandths

// What a bill comes to by its rules, in whole numbers.
struct Expected
{
    qint64 previous = 0, sales = 0, received = 0, tax = 0, balance = 0;
    std::map<std::pair<bool, int>, qint64> goods; // by whether they are reduced, and percent
    std::vector<qint64> balances;                 // of the lines of the period

    // A slip without a day is older than all.
    void add(const QStringList &line, const QString &from, const QString &to)
    {
        const QString day = line.at(1) == u"-" ? QString() : line.at(1);
        if (day > to)
            return;
        const qint64 amount = line.at(2).toLongLong();
        const QChar letter = line.at(3).front();
        balance += letter == u'R' ? -amount : amount;
        if (day < from || letter == u'B') {
            previous += letter == u'R' ? -amount : amount;
        } else if (letter == u'R') {
            received += amount;
        } else {
            sales += amount;
            const bool isTax = line.at(4) == u"1";
            if (isTax)
                tax += amount;
            else
                goods[{line.at(5) == u"1", line.at(6).toInt()}] += amount;
        }
        if (day >= from)
            balances.push_back(balance);
    }

    [[nodiscard]] std::optional<double> unbooked() const
    {
        qint64 yen = 0;
        for (const auto &[rate, amount] : goods)
            yen += amount * rate.second / 100 / perYen;
        return tax == 0 ? std::optional(static_cast<double>(yen)) : std::nullopt;
    }
};

qint64 exact(double yen) { return std::llround(yen * perYen); }

} // namespace

// A year and more of a shop, every month of every customer, against a recalculation from its lines.
class TestBillBook : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyBill();
    void listsAreTheBills();

private:
    std::unique_ptr<FreshShop> m_shop;
    QList<book::Period> m_months;
};

void TestBillBook::initTestCase()
{
    m_shop = std::make_unique<FreshShop>();
    FreshShop &shop = *m_shop;
    GeneratedBook::writeTo(shop);
    shop.run(u"UPDATE 入出庫マスター SET 日付 = NULL WHERE ID % 97 = 0"_s);
    shop.run(u"UPDATE 入出庫サブ SET 税区分 = 1, 税率 = 8 WHERE 明細ID % 5 = 0 AND 商品名 <> '消費税'"_s);
    // Customers taxed on the bill have some of it booked, and some of that taken back.
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) SELECT ID, '消費税', 100 FROM 入出庫マスター WHERE "
             "種別 = 'O' AND 相手先ID % 3 = 1 AND ID % 11 = 0"_s);
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) SELECT ID, '消費税', -100 FROM 入出庫マスター WHERE "
             "種別 = 'O' AND 相手先ID % 3 = 1 AND ID % 22 = 0"_s);
    shop.run(u"UPDATE 納品先 SET 締め日 = 納品先ID % 4 * 10"_s);
    const QList<QDate> ends = GeneratedBook::monthEnds();
    for (int month = 1; month < ends.size(); ++month)
        m_months << book::Period{ends.at(month - 1).addDays(1), ends.at(month)};
}

void TestBillBook::everyBill()
{
    std::map<qint64, std::vector<QStringList>> lines;
    for (const QString &row : m_shop->rows(
             u"SELECT 相手先ID, 日付, CAST(replace(printf('%.4f', 金額), '.', '') AS INTEGER), 種別, "
             "商品名 = '消費税', COALESCE(税区分, 0), COALESCE(税率, 消費税率) FROM 入出庫マスター "
             "JOIN 入出庫サブ USING (ID) WHERE 種別 IN ('O', 'R', 'B') ORDER BY 日付, ID, 明細ID"_s)) {
        const QStringList fields = row.split(u'|');
        lines[fields.front().toLongLong()].push_back(fields);
    }
    int onBill = 0;
    for (const book::Period &month : std::as_const(m_months)) {
        for (const auto &[customer, own] : lines) {
            if (customer == 3 || customer == 11) // deleted
                continue;
            Expected expected;
            for (const QStringList &line : own)
                expected.add(line, month.from.toString(Qt::ISODate), month.to.toString(Qt::ISODate));
            const auto bill = reports::billOf(m_shop->connection, customer, month, {10.0});
            QVERIFY(bill);
            const reports::BillSums &sums = bill->sums;
            QCOMPARE(exact(sums.previous), expected.previous);
            QCOMPARE(exact(sums.sales), expected.sales);
            QCOMPARE(exact(sums.received), expected.received);
            QCOMPARE(exact(sums.untaxed), expected.sales - expected.tax);
            QCOMPARE(exact(sums.tax()), expected.tax);
            QCOMPARE(exact(sums.billed(false)), expected.balance);
            QCOMPARE(exact(bill->rows.empty() ? 0 : bill->rows.back().balance), expected.balance);
            if (bill->customer.taxClass != book::TaxClass::OnBill) {
                QVERIFY(!sums.unbooked);
                continue;
            }
            QCOMPARE(sums.unbooked, expected.unbooked());
            onBill += sums.unbooked ? 1 : 0;
        }
    }
    QVERIFY(onBill > 10 && onBill < 50);
}

void TestBillBook::listsAreTheBills()
{
    const auto compare = [this](const book::Period &month, std::optional<int> closingDay) {
        const auto list = reports::billsOf(m_shop->connection, {month, closingDay}, {10.0}, base::unwatched);
        int found = 0;
        for (const reports::CustomerBill &one : *list) {
            if (one.customer.unknown)
                continue;
            const auto bill = reports::billOf(m_shop->connection, *one.customer.id, month, {10.0});
            const auto amounts = [](const reports::BillSums &sums) {
                return std::tuple(exact(sums.previous), exact(sums.sales), exact(sums.received),
                                  exact(sums.untaxed), sums.unbooked);
            };
            if (amounts(bill->sums) != amounts(one.sums) || bill->hasSlipsInPeriod != one.hasSlipsInPeriod)
                return -1;
            ++found;
        }
        return found;
    };
    for (const book::Period &month : std::as_const(m_months)) {
        QCOMPARE(compare(month, std::nullopt), 10);
        QCOMPARE(compare(month, 0), 3);
        QCOMPARE(compare(month, 10), 3);
        QCOMPARE(compare(month, 20), 3);
        QCOMPARE(compare(month, 30), 1);
    }
}

QTEST_GUILESS_MAIN(TestBillBook)
#include "tst_bill_book.moc"

#include "reports/purchases/purchase_list.h"

#include "book/counterpart_name.h"
#include "book/exact_sum.h"
#include "book/slip_blocks.h"
#include "book/stored_values.h"
#include "book/tax.h"
#include "db/transaction.h"

#include <map>
#include <set>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

double difference(double one, double other)
{
    book::ExactSum sum;
    sum.add(one);
    sum.add(-other);
    return sum.value();
}

double sumOf(double one, double other) { return difference(one, -other); }

QString stored(const QDate &date) { return date.toString(u"yyyy-MM-dd"_s); }

base::Status checkPeriod(const book::Period &period)
{
    if (period.to < period.from)
        return base::Error{u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s};
    return {};
}

// One row for each kind of slip, before the period and within it, and for each rate of the purchases within
// it. Sums are in ten-thousandths, which ExactSum counts. \a which slips: a condition and its values. The
// headers come first (CROSS JOIN), so that the lines of the other kinds are not read.
base::Result<db::Rows> readSums(db::Connection &connection, const book::Period &period, const QString &which,
                                const QVariantList &values)
{
    return connection.select(
        u"SELECT 相手先ID, 種類, 期間内, 税率, SUM(額), SUM(CASE WHEN 税行 THEN 額 ELSE 0 END), SUM(税行) "
        "FROM (SELECT 相手先ID, CASE WHEN 伝票番号 LIKE ? THEN 'I' WHEN 伝票番号 LIKE ? THEN 'P' "
        "WHEN 伝票番号 LIKE ? THEN 'A' END AS 種類, COALESCE(日付, '') >= ? AND NOT "_s +
            book::isUndated() + u" AS 期間内, 消費税率 AS 税率, "_s + book::amountCount() +
            u" AS 額, 商品名 = '消費税' AS 税行 "
            "FROM 入出庫マスター CROSS JOIN 入出庫サブ ON 入出庫サブ.ID = 入出庫マスター.ID "
            "WHERE (COALESCE(日付, '') <= ? OR "_s +
            book::isUndated() + u") AND "_s + which +
            u") WHERE 種類 IS NOT NULL GROUP BY 相手先ID, 種類, 期間内, CASE WHEN 期間内 THEN 税率 END"_s,
        QVariantList{book::patternOf(book::purchase), book::patternOf(book::payment),
                     book::patternOf(book::payableCarried), stored(period.from), stored(period.to)} +
            values);
}

// Adds the rows of one supplier up.
class Account
{
public:
    void add(const QVariantList &row)
    {
        const QChar kind = row.at(1).toString().front();
        const bool within = row.at(2).toBool();
        const auto amount = book::ExactSum::ofTenThousandths(row.at(4).toDouble());
        if (kind == book::payment.letter) {
            if (within)
                m_payments.add(amount);
            else
                m_previous.add(-amount.value());
        } else if (kind == book::purchase.letter && within) {
            addPurchases(row, amount);
        } else { // a carried balance raises what was brought into the period, even when dated within it
            m_previous.add(amount);
        }
    }

    [[nodiscard]] bool hasTaxLine() const { return m_hasTaxLine; }

    [[nodiscard]] PurchaseSums sums(bool taxedOnBill) const
    {
        PurchaseSums sums{m_previous.value(), m_purchases.value(), m_tax.value(), m_payments.value()};
        if (taxedOnBill && !m_hasTaxLine)
            sums.unbooked = taxOfPurchases();
        return sums;
    }

private:
    void addPurchases(const QVariantList &row, const book::ExactSum &amount)
    {
        m_purchases.add(amount);
        m_tax.add(book::ExactSum::ofTenThousandths(row.at(5).toDouble()));
        const QVariant rate = row.at(3);
        m_byRate[rate.isNull() ? std::nullopt : std::optional(rate.toDouble())].add(amount);
        m_hasTaxLine = m_hasTaxLine || row.at(6).toInt() > 0;
    }

    // At the rates that the slips were saved with: a past month comes to the same after the panel's rate was
    // changed, and a month in which it changed is taxed by both.
    [[nodiscard]] std::optional<double> taxOfPurchases() const
    {
        double sum = 0;
        for (const auto &[rate, amount] : m_byRate) {
            if (amount.isZero())
                continue;
            if (!rate) // converted books may hold slips without one
                return std::nullopt;
            const auto tax = book::exclusiveTax(amount.value(), *rate);
            if (!tax)
                return std::nullopt;
            sum += *tax;
        }
        return sum;
    }

    book::ExactSum m_previous;
    book::ExactSum m_purchases;
    book::ExactSum m_tax;
    book::ExactSum m_payments;
    std::map<std::optional<double>, book::ExactSum> m_byRate;
    bool m_hasTaxLine = false;
};

using Accounts = std::map<book::CounterpartKey, Account>;

base::Status readAccounts(db::Connection &connection, const book::Period &period, const QString &which,
                          const QVariantList &values, Accounts &accounts)
{
    const auto rows = readSums(connection, period, which, values);
    if (!rows)
        return rows.error();
    for (const QVariantList &row : rows->rows) {
        const QVariant &supplier = row.front();
        accounts[supplier.isNull() ? book::CounterpartKey() : supplier.toLongLong()].add(row);
    }
    return {};
}

SupplierPurchases purchasesFrom(const QVariantList &supplier)
{
    SupplierPurchases purchases;
    purchases.supplier = supplier.at(0).toLongLong();
    purchases.name1 = supplier.at(1).toString();
    purchases.name2 = supplier.at(2).toString();
    purchases.code = supplier.at(3).toString();
    return purchases;
}

SupplierPurchases purchasesOfUnknown(book::CounterpartKey supplier)
{
    SupplierPurchases purchases;
    purchases.supplier = supplier;
    purchases.unknown = true;
    purchases.name1 = book::unknownCounterpartName(supplier);
    return purchases;
}

void enter(SupplierPurchases &purchases, const Account &account, bool taxedOnBill)
{
    purchases.hasTaxLine = account.hasTaxLine();
    purchases.sums = account.sums(taxedOnBill);
}

// Takes the accounts in the order of the suppliers; what is left belongs to deleted ones and to nobody.
base::Result<PurchaseList> listed(db::Connection &connection, Accounts accounts, bool withIdle)
{
    const auto suppliers = connection.select(
        u"SELECT 仕入先ID, 仕入先名1, 仕入先名2, コード FROM 仕入先 ORDER BY コード, 仕入先ID"_s);
    if (!suppliers)
        return suppliers.error();
    const auto taxedOnBill = connection.keys(u"SELECT 仕入先ID FROM 仕入先 WHERE 消費税区分 = 1"_s);
    if (!taxedOnBill)
        return taxedOnBill.error();
    const std::set<book::CounterpartKey> onBill(taxedOnBill->begin(), taxedOnBill->end());

    PurchaseList list;
    const auto take = [&](SupplierPurchases purchases, const Account &account) {
        enter(purchases, account, onBill.contains(purchases.supplier));
        list.totals.add(purchases.sums);
        if (withIdle || !purchases.sums.isEmpty())
            list.suppliers.push_back(std::move(purchases));
    };
    for (const QVariantList &row : suppliers->rows) {
        const auto account = accounts.extract(row.front().toLongLong());
        take(purchasesFrom(row), account ? account.mapped() : Account());
    }
    const auto nobody = accounts.extract(book::CounterpartKey());
    for (const auto &[supplier, account] : accounts)
        take(purchasesOfUnknown(supplier), account);
    if (nobody)
        take(purchasesOfUnknown({}), nobody.mapped());
    return list;
}

} // namespace

double PurchaseSums::balance() const { return difference(sumOf(previous, purchases), payments); }
double PurchaseSums::carried() const { return difference(previous, payments); }
double PurchaseSums::untaxed() const { return difference(purchases, tax); }

bool PurchaseSums::isEmpty() const
{
    return previous == 0 && purchases == 0 && tax == 0 && payments == 0 && unbooked == 0.0;
}

void PurchaseSums::add(const PurchaseSums &other)
{
    previous = sumOf(previous, other.previous);
    purchases = sumOf(purchases, other.purchases);
    tax = sumOf(tax, other.tax);
    payments = sumOf(payments, other.payments);
    if (unbooked && other.unbooked)
        unbooked = sumOf(*unbooked, *other.unbooked);
    else
        unbooked.reset();
}

QString SupplierPurchases::name() const { return book::counterpartName(name1, name2); }

base::Result<PurchaseList> purchaseList(db::Connection &connection, const book::Period &period, bool withIdle,
                                        const base::Progress &progress)
{
    if (const base::Status good = checkPeriod(period); !good)
        return good.error();
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    Accounts accounts;
    const base::Status read = book::forSlipBlocks(connection, progress, [&](qint64 after, qint64 upTo) {
        return readAccounts(connection, period, u"入出庫マスター.ID > ? AND 入出庫マスター.ID <= ?"_s,
                            {after, upTo}, accounts);
    });
    if (!read)
        return read.error();
    return listed(connection, std::move(accounts), withIdle);
}

base::Result<SupplierPurchases> purchasesOf(db::Connection &connection, qint64 supplier,
                                            const book::Period &period)
{
    if (const base::Status good = checkPeriod(period); !good)
        return good.error();
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    Accounts accounts;
    if (const base::Status read = readAccounts(connection, period, u"相手先ID = ?"_s, {supplier}, accounts);
        !read)
        return read.error();
    const auto found = connection.select(
        u"SELECT 仕入先ID, 仕入先名1, 仕入先名2, コード, 消費税区分 FROM 仕入先 WHERE 仕入先ID = ?"_s,
        {supplier});
    if (!found)
        return found.error();
    SupplierPurchases purchases =
        found->isEmpty() ? purchasesOfUnknown(supplier) : purchasesFrom(found->rows.front());
    const bool onBill = !found->isEmpty() &&
                        book::taxClassFrom(found->rows.front().at(4).toString()) == book::TaxClass::OnBill;
    enter(purchases, accounts[supplier], onBill);
    return purchases;
}

} // namespace reports

#include "reports/purchases/purchase_list.h"

#include "base/exact_sum.h"
#include "book/counterpart_name.h"
#include "book/movement_sums.h"
#include "book/tax.h"
#include "book/taxes_by_rate.h"
#include "db/transaction.h"
#include "reports/period_check.h"

#include <map>
#include <set>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

double difference(double one, double other)
{
    base::ExactSum sum;
    sum.add(one);
    sum.add(-other);
    return sum.value();
}

double sumOf(double one, double other) { return difference(one, -other); }

// Adds the sums of one supplier up.
class Account
{
public:
    void add(const book::MovementSum &part)
    {
        if (part.kind == book::payment && part.isSince)
            m_payments.add(part.amount);
        else if (part.kind == book::purchase && part.isSince)
            addPurchases(part);
        else // a carried balance raises what was brought into the period, even when dated within it
            m_previous.add(part.inBalance());
    }

    // Tax lines that take each other back book nothing.
    [[nodiscard]] bool isTaxBooked() const { return !m_tax.isZero(); }

    [[nodiscard]] PurchaseSums sums(bool taxedOnBill) const
    {
        PurchaseSums sums{m_previous.value(), m_purchases.value(), m_tax.value(), m_payments.value()};
        if (taxedOnBill && !isTaxBooked())
            sums.unbooked = taxOfPurchases();
        return sums;
    }

private:
    void addPurchases(const book::MovementSum &part)
    {
        m_purchases.add(part.amount);
        m_tax.add(part.tax);
        base::ExactSum goods = part.amount;
        goods.add(part.tax.times(-1));
        m_byRate[{part.taxClass.value_or(book::GoodsTax::Standard), part.taxRate}].add(goods);
    }

    // At the rates that the slips were saved with: a past month comes to the same after the panel's rate was
    // changed, and a month in which it changed is taxed by both.
    [[nodiscard]] std::optional<double> taxOfPurchases() const
    {
        std::vector<book::TaxableAmount> amounts;
        for (const auto &[rate, amount] : m_byRate) {
            if (amount.isZero())
                continue;
            if (!rate.second) // converted books may hold slips without one
                return std::nullopt;
            amounts.push_back({amount.value(), *rate.second, rate.first});
        }
        const auto tax = book::taxOf(amounts, book::Basis::Net);
        return tax ? std::optional(*tax) : std::nullopt;
    }

    base::ExactSum m_previous;
    base::ExactSum m_purchases;
    base::ExactSum m_tax;
    base::ExactSum m_payments;
    std::map<std::pair<book::GoodsTax, std::optional<double>>, base::ExactSum> m_byRate;
};

using Accounts = std::map<book::CounterpartKey, Account>;

// \a supplier: none for all of them.
base::Result<Accounts> readAccounts(db::Connection &connection, const book::Period &period,
                                    std::optional<book::CounterpartKey> supplier,
                                    const base::Progress &progress)
{
    Accounts accounts;
    const book::Selection selection{.kinds = book::balanceKindsOf(book::Party::Supplier),
                                    .counterpart = supplier,
                                    .days = book::Days::upTo(period.to)};
    const book::Grouping grouping{
        .byCounterpart = true, .byRate = true, .since = period.from, .withTax = true};
    const base::Status read = book::sumMovements(
        connection, selection, grouping, progress,
        [&accounts](const book::MovementSum &part) { accounts[part.counterpart].add(part); });
    return read ? base::Result<Accounts>(std::move(accounts)) : read.error();
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
    purchases.isTaxBooked = account.isTaxBooked();
    purchases.sums = account.sums(taxedOnBill);
}

// What may be deducted of purchases from those of \a list who were not registered then.
base::Status addDeductions(db::Connection &connection, const book::Period &period,
                           const std::set<book::CounterpartKey> &onBill, PurchaseList &list)
{
    const auto lacking = book::suppliersLackingRegistration(connection);
    if (!lacking)
        return lacking.error();
    for (SupplierPurchases &purchases : list.suppliers) {
        const auto supplier = lacking->find(purchases.supplier.value_or(0));
        if (supplier == lacking->end())
            continue;
        const auto deduction = deductionOf(connection, supplier->first, period, supplier->second,
                                           onBill.contains(purchases.supplier));
        if (!deduction)
            return deduction.error();
        purchases.deduction = *deduction;
        if (!purchases.deduction)
            continue;
        if (!list.deduction)
            list.deduction.emplace();
        list.deduction->add(*purchases.deduction);
    }
    return {};
}

// Takes the accounts in the order of the suppliers; what is left belongs to deleted ones and to nobody.
base::Result<PurchaseList> listed(db::Connection &connection, const book::Period &period, Accounts accounts,
                                  bool withIdle)
{
    const auto suppliers = connection.select(
        u"SELECT 仕入先ID, 仕入先名1, 仕入先名2, コード FROM 仕入先 ORDER BY コード, 仕入先ID"_s);
    if (!suppliers)
        return suppliers.error();
    const auto taxedOnBill = connection.integers(u"SELECT 仕入先ID FROM 仕入先 WHERE 消費税区分 = 1"_s);
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
    if (const base::Status added = addDeductions(connection, period, onBill, list); !added)
        return added.error();
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
    auto accounts = readAccounts(connection, period, std::nullopt, progress);
    if (!accounts)
        return accounts.error();
    return listed(connection, period, std::move(*accounts), withIdle);
}

base::Result<SupplierPurchases> purchasesOf(db::Connection &connection, qint64 supplier,
                                            const book::Period &period)
{
    if (const base::Status good = checkPeriod(period); !good)
        return good.error();
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    auto accounts = readAccounts(connection, period, book::CounterpartKey(supplier), base::unwatched);
    if (!accounts)
        return accounts.error();
    const auto found = connection.select(
        u"SELECT 仕入先ID, 仕入先名1, 仕入先名2, コード, 消費税区分 FROM 仕入先 WHERE 仕入先ID = ?"_s,
        {supplier});
    if (!found)
        return found.error();
    SupplierPurchases purchases =
        found->isEmpty() ? purchasesOfUnknown(supplier) : purchasesFrom(found->rows.front());
    const bool onBill = !found->isEmpty() &&
                        book::taxClassFrom(found->rows.front().at(4).toString()) == book::TaxClass::OnBill;
    enter(purchases, (*accounts)[supplier], onBill);
    return purchases;
}

} // namespace reports

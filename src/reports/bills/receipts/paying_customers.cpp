#include "reports/bills/receipts/paying_customers.h"

#include "book/counterpart_name.h"
#include "book/taken_payments.h"
#include "db/connection.h"
#include "reports/bills/bill_list.h"
#include "reports/bills/closing_period.h"
#include "reports/bills/receipts/payer_key.h"
#include "text/like.h"

#include <algorithm>
#include <set>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr qsizetype shortestCut = 6; // half-width characters of a name that may have been cut

} // namespace

base::Result<PayingCustomers> PayingCustomers::read(db::Connection &connection, std::optional<int> closingDay,
                                                    const QDate &today, const base::Progress &progress)
{
    PayingCustomers customers;
    base::Status done = customers.readCustomers(connection, closingDay);
    if (done)
        done = customers.readDebts(connection, today, progress);
    if (done)
        done = customers.readKnown(connection);
    return done ? base::Result<PayingCustomers>(std::move(customers)) : done.error();
}

base::Status PayingCustomers::readCustomers(db::Connection &connection, std::optional<int> closingDay)
{
    db::Condition wanted = closingDay ? customersClosingOn(*closingDay) : db::Condition();
    const auto rows = connection.select(
        u"SELECT 納品先ID, コード, 納品先名1, 納品先名2, フリガナ, 締め日 FROM 納品先"_s +
            (wanted.sql.isEmpty() ? QString() : u" WHERE "_s + wanted.sql) + u" ORDER BY 納品先ID"_s,
        wanted.values);
    if (!rows)
        return rows.error();
    for (const QVariantList &row : rows->rows) {
        const QString name1 = row.at(2).toString();
        const QString name2 = row.at(3).toString();
        const std::size_t place = m_all.size();
        m_all.push_back({.id = row.at(0).toLongLong(),
                         .code = row.at(1).toString(),
                         .name = book::counterpartName(name1, name2),
                         .reading = row.at(4).toString()});
        m_closingDays.push_back(closingDayFrom(row.at(5).toInt()));
        m_byId.insert(m_all.back().id, place);
        if (!m_all.back().code.isEmpty())
            m_byCode[m_all.back().code].push_back(place);
        addKeys(place, {row.at(4).toString(), name1, name2, name1 + name2});
    }
    m_keys = m_byKey.keys();
    m_keys.sort();
    return {};
}

void PayingCustomers::addKeys(std::size_t place, const QStringList &names)
{
    for (const QString &name : names) {
        const QString key = payerKey(name);
        if (key.isEmpty())
            continue;
        Places &places = m_byKey[key];
        if (places.empty() || places.back() != place)
            places.push_back(place);
    }
}

// The last bill is what the period behind it begins with.
base::Status PayingCustomers::readDebts(db::Connection &connection, const QDate &today,
                                        const base::Progress &progress)
{
    for (const int day : std::set<int>(m_closingDays.begin(), m_closingDays.end())) {
        const QDate since = closingPeriod(day, today).to.addDays(1);
        const BillRun run{.period = {since, std::max(since, today)},
                          .closingDay = day,
                          .withAges = false,
                          .withIdle = false};
        const auto bills = billsOf(connection, run, {}, progress);
        if (!bills)
            return bills.error();
        for (const CustomerBill &bill : *bills) {
            const auto found = m_byId.constFind(bill.customer.id.value_or(0));
            if (found == m_byId.cend())
                continue;
            PayingCustomer &customer = m_all[*found];
            customer.billed = bill.sums.carried();
            customer.balance = bill.sums.balance();
            m_owing[customer.billed].push_back(*found);
            if (customer.balance != customer.billed)
                m_owing[customer.balance].push_back(*found);
        }
    }
    return {};
}

base::Status PayingCustomers::readKnown(db::Connection &connection)
{
    const auto payers = book::knownPayers(connection);
    if (!payers)
        return payers.error();
    for (const book::KnownPayer &payer : *payers) {
        const auto found = m_byId.constFind(payer.customer);
        if (found != m_byId.cend() && !payer.payerKey.isEmpty())
            m_known[payer.payerKey].push_back(*found);
    }
    return {};
}

const PayingCustomer *PayingCustomers::with(qint64 id) const
{
    const auto found = m_byId.constFind(id);
    return found == m_byId.cend() ? nullptr : &m_all[*found];
}

PayingCustomers::Places PayingCustomers::beginning(const QString &key) const
{
    std::set<std::size_t> places;
    const auto add = [&](const QString &name) {
        const Places named = m_byKey.value(name);
        places.insert(named.begin(), named.end());
    };
    if (key.size() < shortestCut)
        return {};
    for (auto each = std::ranges::lower_bound(m_keys, key); each != m_keys.end() && each->startsWith(key);
         ++each)
        add(*each);
    for (qsizetype length = shortestCut; length < key.size(); ++length)
        add(key.left(length));
    return {places.begin(), places.end()};
}

PayingCustomers::Places PayingCustomers::found(const QString &typed, std::size_t most) const
{
    const std::u16string wanted = text::folded(typed.simplified());
    const QString key = payerKey(typed);
    Places places;
    for (std::size_t place = 0; place < m_all.size() && places.size() < most; ++place) {
        const PayingCustomer &customer = m_all[place];
        const bool isNamed = !key.isEmpty() && (payerKey(customer.name).contains(key) ||
                                                payerKey(customer.reading).contains(key));
        const std::u16string code = text::folded(customer.code);
        if (isNamed ||
            (!wanted.empty() && (code.find(wanted) != code.npos ||
                                 QString::number(customer.id) == QString::fromStdU16String(wanted))))
            places.push_back(place);
    }
    return places;
}

} // namespace reports

#include "reports/ledgers/ledger.h"

#include "base/exact_sum.h"
#include "book/counterpart_name.h"
#include "book/movement_sums.h"
#include "book/movements.h"
#include "book/stored_values.h"
#include "book/tax.h"
#include "book/taxes_by_rate.h"
#include "db/transaction.h"
#include "text/japanese_order.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

Movement movementOf(const book::SlipKind &kind)
{
    if (kind.sign < 0)
        return Movement::Settled;
    return kind == book::receivableCarried || kind == book::payableCarried ? Movement::Carried
                                                                           : Movement::Charged;
}

// --- One counterpart ---

base::Result<base::ExactSum> balanceBefore(db::Connection &connection, book::Party party,
                                           book::CounterpartKey counterpart, const QDate &day)
{
    base::ExactSum balance;
    const base::Status summed = book::sumMovements(
        connection,
        {.kinds = book::balanceKindsOf(party), .counterpart = counterpart, .days = book::Days::before(day)},
        {}, base::unwatched, [&balance](const book::MovementSum &part) { balance.add(part.inBalance()); });
    return summed ? base::Result<base::ExactSum>(balance) : summed.error();
}

LedgerLine lineFrom(book::Movement &&movement)
{
    LedgerLine line;
    line.kind = movement.kind;
    line.movement = movementOf(movement.kind);
    line.slip = movement.slip;
    line.date = std::move(movement.date);
    line.number = std::move(movement.number);
    line.product = std::move(movement.product);
    line.specification = std::move(movement.specification);
    line.quantity = movement.quantity;
    line.unit = std::move(movement.unit);
    line.price = movement.price;
    line.amount = movement.amount;
    return line;
}

// The tax in the prices of slips, one after the other: rounded once a slip, as on its paper.
class IncludedTax
{
public:
    /// \a isUsual: where nobody knows whether a slip's prices include the tax, they do.
    explicit IncludedTax(bool isUsual)
        : m_isUsual(isUsual)
    {}

    void add(const book::Movement &movement)
    {
        if (std::exchange(m_slip, movement.slip) != movement.slip)
            finishSlip();
        if (movementOf(movement.kind) != Movement::Charged || !movement.inclusive.value_or(m_isUsual))
            return;
        m_hasTaxLine = m_hasTaxLine || movement.isTax();
        m_goods.push_back({movement.amount, movement.taxRate.value_or(0),
                           movement.taxClass.value_or(book::GoodsTax::Standard)});
    }

    /// Yen of the slips so far. A slip with a rate or an amount that is none makes it none.
    double value()
    {
        finishSlip();
        return m_sum.value();
    }

private:
    void finishSlip()
    {
        if (!m_goods.empty() && !m_hasTaxLine) {
            const auto tax = book::taxOf(m_goods, book::Basis::Gross);
            m_sum.add(tax ? *tax : std::nan(""));
        }
        m_goods.clear();
        m_hasTaxLine = false;
    }

    const bool m_isUsual;
    qint64 m_slip = 0;
    bool m_hasTaxLine = false;
    std::vector<book::TaxableAmount> m_goods;
    base::ExactSum m_sum;
};

base::Result<bool> pricesUsuallyInclude(db::Connection &connection, book::Party party,
                                        book::CounterpartKey counterpart)
{
    const auto found = connection.select(party == book::Party::Customer
                                             ? u"SELECT 消費税区分 FROM 納品先 WHERE 納品先ID = ?"_s
                                             : u"SELECT 消費税区分 FROM 仕入先 WHERE 仕入先ID = ?"_s,
                                         {counterpart.value_or(0)});
    if (!found)
        return found.error();
    return !found->isEmpty() &&
           book::taxClassFrom(found->rows.front().front().toString()) == book::TaxClass::Included;
}

// Adds the lines up in their order.
class Totals
{
public:
    explicit Totals(const base::ExactSum &brought)
        : m_carried(brought)
        , m_balance(brought)
    {}

    /// \a isTax: the line is a slip's tax.
    void add(LedgerLine &line, bool isTax)
    {
        base::ExactSum &sum = line.movement == Movement::Settled   ? m_settled
                              : line.movement == Movement::Charged ? m_charged
                                                                   : m_carried;
        sum.add(line.amount);
        if (line.movement == Movement::Charged && isTax)
            m_tax.add(line.amount);
        m_balance.add(line.movement == Movement::Settled ? -line.amount : line.amount);
        line.balance = m_balance.value();
    }

    [[nodiscard]] LedgerTotals values() const
    {
        return {.carried = m_carried.value(),
                .charged = m_charged.value(),
                .tax = m_tax.value(),
                .settled = m_settled.value(),
                .balance = m_balance.value()};
    }

private:
    base::ExactSum m_carried;
    base::ExactSum m_charged;
    base::ExactSum m_tax;
    base::ExactSum m_settled;
    base::ExactSum m_balance;
};

// --- All counterparts ---

// With the text that tells its place in the list.
QString namesStatement(book::Party party)
{
    return party == book::Party::Customer
               ? u"SELECT 納品先ID, コード, 納品先名1, 納品先名2, フリガナ FROM 納品先 "
                 "WHERE EXISTS (SELECT 1 FROM 入出庫マスター WHERE 相手先ID = 納品先ID)"_s
               : u"SELECT 仕入先ID, コード, 仕入先名1, 仕入先名2, コード FROM 仕入先 "
                 "WHERE EXISTS (SELECT 1 FROM 入出庫マスター WHERE 相手先ID = 仕入先ID)"_s;
}

// A balance on its way: every part of a counterpart's sums goes into it.
struct Account
{
    base::ExactSum sum;
    QString lastCharged;
    QString lastSettled;

    void add(const book::MovementSum &part)
    {
        sum.add(part.inBalance());
        const Movement movement = movementOf(part.kind);
        if (movement == Movement::Charged)
            lastCharged = std::max(lastCharged, part.lastDay);
        else if (movement == Movement::Settled)
            lastSettled = std::max(lastSettled, part.lastDay);
    }
};

using Accounts = std::unordered_map<book::CounterpartKey, Account>;

base::Result<Accounts> readAccounts(db::Connection &connection, book::Party party, const QDate &day,
                                    const base::Progress &progress)
{
    Accounts accounts;
    const base::Status read = book::sumMovements(
        connection, {.kinds = book::balanceKindsOf(party), .days = book::Days::upTo(day)},
        {.byCounterpart = true, .withLastDay = true}, progress,
        [&accounts](const book::MovementSum &part) { accounts[part.counterpart].add(part); });
    if (!read)
        return read.error();
    return accounts;
}

struct Listed
{
    CounterpartBalance balance;
    QByteArray place; // UTF-8
};

Listed listed(book::CounterpartKey counterpart, const Account &account)
{
    Listed entry;
    entry.balance.counterpart = counterpart;
    entry.balance.balance = account.sum.value();
    entry.balance.lastCharged = account.lastCharged;
    entry.balance.lastSettled = account.lastSettled;
    return entry;
}

// Takes the accounts of those in the register; what is left belongs to deleted ones and to nobody.
std::vector<Listed> namedAccounts(Accounts accounts, const db::Rows &names)
{
    std::vector<Listed> list;
    list.reserve(accounts.size());
    for (const QVariantList &row : names.rows) {
        const auto account = accounts.extract(book::storedKey(row.front()));
        if (!account)
            continue;
        list.push_back(listed(account.key(), account.mapped()));
        list.back().balance.code = row.at(1).toString();
        list.back().balance.name = book::counterpartName(row.at(2).toString(), row.at(3).toString());
        list.back().place = row.at(4).toString().toUtf8();
    }
    for (const auto &[counterpart, account] : accounts) {
        list.push_back(listed(counterpart, account));
        list.back().balance.unknown = true;
        list.back().balance.name = book::unknownCounterpartName(counterpart);
    }
    return list;
}

// Readings in the order of the sounds, codes as they are.
int comparePlaces(const Listed &one, const Listed &other, book::Party party)
{
    if (party == book::Party::Supplier)
        return one.place.compare(other.place);
    const auto viewOf = [](const QByteArray &text) {
        return std::string_view(text.constData(), static_cast<std::size_t>(text.size()));
    };
    return text::compareJapanese(viewOf(one.place), viewOf(other.place));
}

bool comesBefore(const Listed &one, const Listed &other, book::Party party)
{
    const auto rank = [](const Listed &entry, int place) {
        const CounterpartBalance &balance = entry.balance;
        return std::tuple(balance.unknown, !balance.counterpart, place, balance.counterpart);
    };
    return rank(one, comparePlaces(one, other, party)) < rank(other, 0);
}

} // namespace

base::Result<Ledger> readLedger(db::Connection &connection, book::Party party,
                                book::CounterpartKey counterpart, const book::Period &period)
{
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    const auto brought = balanceBefore(connection, party, counterpart, period.from);
    if (!brought)
        return brought.error();
    auto found = book::movements(connection, {.kinds = book::balanceKindsOf(party),
                                              .counterpart = counterpart,
                                              .days = book::Days::within(period)});
    if (!found)
        return found.error();

    const auto usual = pricesUsuallyInclude(connection, party, counterpart);
    if (!usual)
        return usual.error();

    Ledger ledger;
    ledger.brought = brought->value();
    ledger.lines.reserve(found->size());
    Totals totals(*brought);
    IncludedTax included(*usual);
    for (book::Movement &movement : *found) {
        included.add(movement);
        const bool isTax = movement.isTax();
        ledger.lines.push_back(lineFrom(std::move(movement)));
        totals.add(ledger.lines.back(), isTax);
    }
    ledger.totals = totals.values();
    ledger.totals.included = included.value();
    return ledger;
}

base::Result<std::vector<CounterpartBalance>> balanceList(db::Connection &connection, book::Party party,
                                                          const QDate &day, const base::Progress &progress)
{
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    auto accounts = readAccounts(connection, party, day, progress);
    if (!accounts)
        return accounts.error();
    const auto names = connection.select(namesStatement(party));
    if (!names)
        return names.error();

    std::vector<Listed> list = namedAccounts(std::move(*accounts), *names);
    std::sort(list.begin(), list.end(),
              [party](const Listed &one, const Listed &other) { return comesBefore(one, other, party); });
    std::vector<CounterpartBalance> balances;
    balances.reserve(list.size());
    for (Listed &entry : list)
        balances.push_back(std::move(entry.balance));
    return balances;
}

} // namespace reports

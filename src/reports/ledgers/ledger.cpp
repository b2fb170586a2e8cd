#include "reports/ledgers/ledger.h"

#include "book/counterpart_name.h"
#include "book/exact_sum.h"
#include "book/slip_blocks.h"
#include "book/stored_values.h"
#include "db/transaction.h"

#include <algorithm>
#include <array>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

// In the order of Movement.
using Kinds = std::array<book::SlipKind, 3>;

constexpr Kinds kindsOf(book::Party party)
{
    return party == book::Party::Customer ? Kinds{book::receivableCarried, book::sale, book::receipt}
                                          : Kinds{book::payableCarried, book::purchase, book::payment};
}

QVariantList patternsOf(book::Party party)
{
    QVariantList patterns;
    for (const book::SlipKind &kind : kindsOf(party))
        patterns << book::patternOf(kind);
    return patterns;
}

QString stored(const QDate &date) { return date.toString(u"yyyy-MM-dd"_s); }

QVariant stored(book::CounterpartKey counterpart)
{
    return counterpart ? QVariant(*counterpart) : QVariant();
}

// --- One counterpart ---

base::Result<book::ExactSum> balanceBefore(db::Connection &connection, book::Party party,
                                           book::CounterpartKey counterpart, const QDate &day)
{
    const auto sums = connection.select(
        u"SELECT 伝票番号 LIKE ?, SUM("_s + book::amountCount() +
            u") FROM 入出庫マスター INNER JOIN 入出庫サブ ON 入出庫サブ.ID = 入出庫マスター.ID "
            "WHERE 相手先ID IS ? AND (COALESCE(日付, '') < ? OR "_s +
            book::isUndated() + u") AND (伝票番号 LIKE ? OR 伝票番号 LIKE ? OR 伝票番号 LIKE ?) GROUP BY 1"_s,
        QVariantList{book::patternOf(kindsOf(party).back()), stored(counterpart), stored(day)} +
            patternsOf(party));
    if (!sums)
        return sums.error();
    book::ExactSum balance;
    for (const QVariantList &row : sums->rows) {
        const double count = row.at(1).toDouble();
        balance.add(book::ExactSum::ofTenThousandths(row.at(0).toBool() ? -count : count));
    }
    return balance;
}

base::Result<db::Rows> linesWithin(db::Connection &connection, book::Party party,
                                   book::CounterpartKey counterpart, const book::Period &period)
{
    return connection.select(u"SELECT CASE WHEN 伝票番号 LIKE ? THEN 0 WHEN 伝票番号 LIKE ? THEN 1 WHEN "
                             u"伝票番号 LIKE ? THEN 2 END, "
                             "入出庫マスター.ID, 日付, 伝票番号, 商品名, 規格, 数量, 単位, 単価, 金額 "
                             "FROM 入出庫マスター INNER JOIN 入出庫サブ ON 入出庫サブ.ID = 入出庫マスター.ID "
                             "WHERE 相手先ID IS ? AND 日付 >= ? AND 日付 <= ? AND NOT "_s +
                                 book::isUndated() +
                                 u" AND (伝票番号 LIKE ? OR 伝票番号 LIKE ? OR 伝票番号 LIKE ?) "
                                 "ORDER BY 日付, 入出庫マスター.ID, 入出庫サブ.rowid"_s,
                             patternsOf(party) +
                                 QVariantList{stored(counterpart), stored(period.from), stored(period.to)} +
                                 patternsOf(party));
}

LedgerLine lineFrom(const QVariantList &row, book::Party party)
{
    LedgerLine line;
    const int movement = row.at(0).toInt();
    line.kind = kindsOf(party)[static_cast<std::size_t>(movement)];
    line.movement = static_cast<Movement>(movement);
    line.slip = row.at(1).toLongLong();
    line.date = row.at(2).toString();
    line.number = row.at(3).toString();
    line.product = row.at(4).toString();
    line.specification = row.at(5).toString();
    line.quantity = book::storedNumber(row.at(6));
    line.unit = row.at(7).toString();
    line.price = book::storedNumber(row.at(8));
    line.amount = book::storedNumber(row.at(9)).value_or(0);
    return line;
}

// Adds the lines up in their order.
class Totals
{
public:
    explicit Totals(const book::ExactSum &brought)
        : m_carried(brought)
        , m_balance(brought)
    {}

    void add(LedgerLine &line)
    {
        book::ExactSum &sum = line.movement == Movement::Settled   ? m_settled
                              : line.movement == Movement::Charged ? m_charged
                                                                   : m_carried;
        sum.add(line.amount);
        if (line.movement == Movement::Charged && line.product == QStringView(book::taxLineName))
            m_tax.add(line.amount);
        m_balance.add(line.movement == Movement::Settled ? -line.amount : line.amount);
        line.balance = m_balance.value();
    }

    [[nodiscard]] LedgerTotals values() const
    {
        return {m_carried.value(), m_charged.value(), m_tax.value(), m_settled.value(), m_balance.value()};
    }

private:
    book::ExactSum m_carried;
    book::ExactSum m_charged;
    book::ExactSum m_tax;
    book::ExactSum m_settled;
    book::ExactSum m_balance;
};

// --- All counterparts ---

// What the slips of a range of keys move. Read in the order of the keys, which is the order of the file: by
// counterpart, every slip of a large book would be looked for by itself. Only what seems to be of a later day
// is asked whether it is a date.
const QString movementsStatement =
    u"SELECT 相手先ID, 動き, SUM(額), MAX(日) FROM "
    "(SELECT 相手先ID, CASE WHEN 日付 <= ? THEN 日付 END AS 日, "
    "CASE WHEN 伝票番号 LIKE ? THEN 0 WHEN 伝票番号 LIKE ? THEN 1 WHEN 伝票番号 LIKE ? THEN 2 END AS 動き, "
    "(SELECT SUM("_s +
    book::amountCount() +
    u") FROM 入出庫サブ WHERE 入出庫サブ.ID = 入出庫マスター.ID) AS 額 "
    "FROM 入出庫マスター WHERE ID > ? AND ID <= ? AND (COALESCE(日付, '') <= ? OR "_s +
    book::isUndated() + u")) WHERE 動き IS NOT NULL GROUP BY 相手先ID, 動き"_s;

// With the text that tells its place in the list.
QString namesStatement(book::Party party)
{
    return party == book::Party::Customer
               ? u"SELECT 納品先ID, コード, 納品先名1, 納品先名2, フリガナ FROM 納品先 "
                 "WHERE EXISTS (SELECT 1 FROM 入出庫マスター WHERE 相手先ID = 納品先ID)"_s
               : u"SELECT 仕入先ID, コード, 仕入先名1, 仕入先名2, コード FROM 仕入先 "
                 "WHERE EXISTS (SELECT 1 FROM 入出庫マスター WHERE 相手先ID = 仕入先ID)"_s;
}

// A balance on its way: every row of a counterpart's movements goes into it.
struct Account
{
    book::ExactSum sum;
    QString lastCharged;
    QString lastSettled;

    void add(const QVariantList &row)
    {
        const auto movement = static_cast<Movement>(row.at(1).toInt());
        const double count = row.at(2).toDouble();
        const QString date = row.at(3).toString();
        sum.add(book::ExactSum::ofTenThousandths(movement == Movement::Settled ? -count : count));
        if (movement == Movement::Charged)
            lastCharged = std::max(lastCharged, date);
        else if (movement == Movement::Settled)
            lastSettled = std::max(lastSettled, date);
    }
};

using Accounts = std::unordered_map<book::CounterpartKey, Account>;

book::CounterpartKey keyIn(const QVariant &value)
{
    return value.isNull() ? book::CounterpartKey() : book::CounterpartKey(value.toLongLong());
}

base::Result<Accounts> readAccounts(db::Connection &connection, book::Party party, const QDate &day,
                                    const base::Progress &progress)
{
    Accounts accounts;
    const base::Status read =
        book::forSlipBlocks(connection, progress, [&](qint64 after, qint64 upTo) -> base::Status {
            const auto rows =
                connection.select(movementsStatement, QVariantList{stored(day)} + patternsOf(party) +
                                                          QVariantList{after, upTo, stored(day)});
            if (!rows)
                return rows.error();
            for (const QVariantList &row : rows->rows)
                accounts[keyIn(row.front())].add(row);
            return {};
        });
    if (!read)
        return read.error();
    return accounts;
}

struct Listed
{
    CounterpartBalance balance;
    QString place;
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
        const auto account = accounts.extract(keyIn(row.front()));
        if (!account)
            continue;
        list.push_back(listed(account.key(), account.mapped()));
        list.back().balance.code = row.at(1).toString();
        list.back().balance.name = book::counterpartName(row.at(2).toString(), row.at(3).toString());
        list.back().place = row.at(4).toString();
    }
    for (const auto &[counterpart, account] : accounts) {
        list.push_back(listed(counterpart, account));
        list.back().balance.unknown = true;
        list.back().balance.name = book::unknownCounterpartName(counterpart);
    }
    return list;
}

bool comesBefore(const Listed &one, const Listed &other)
{
    const auto rank = [](const Listed &entry) {
        const CounterpartBalance &balance = entry.balance;
        return std::tuple(balance.unknown, !balance.counterpart, entry.place, balance.counterpart);
    };
    return rank(one) < rank(other);
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
    const auto rows = linesWithin(connection, party, counterpart, period);
    if (!rows)
        return rows.error();

    Ledger ledger;
    ledger.brought = brought->value();
    ledger.lines.reserve(rows->rows.size());
    Totals totals(*brought);
    for (const QVariantList &row : rows->rows) {
        ledger.lines.push_back(lineFrom(row, party));
        totals.add(ledger.lines.back());
    }
    ledger.totals = totals.values();
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
    std::sort(list.begin(), list.end(), comesBefore);
    std::vector<CounterpartBalance> balances;
    balances.reserve(list.size());
    for (Listed &entry : list)
        balances.push_back(std::move(entry.balance));
    return balances;
}

} // namespace reports

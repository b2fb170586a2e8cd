#include "reports/ledgers/goods_ledger.h"

#include "base/exact_sum.h"
#include "book/counterpart_name.h"
#include "book/movements.h"
#include "db/transaction.h"

#include <algorithm>
#include <map>
#include <tuple>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

bool isCount(const book::Movement &movement) { return movement.kind == book::stocktake; }

// Takes the movements in the order of the ledger.
class GoodsAccount
{
public:
    explicit GoodsAccount(const QDate &from)
        : m_from(from.toString(Qt::ISODate))
    {}

    /// \return whether the movement is one of the period
    bool take(const book::Movement &movement)
    {
        const bool within = !movement.date.isEmpty() && movement.date >= m_from;
        const double quantity = movement.quantity.value_or(0);
        if (isCount(movement))
            count(movement.date, quantity, within);
        else
            move(movement.kind == book::purchase, quantity, within);
        if (!within) {
            m_ledger.counted = m_counted;
            m_ledger.brought = m_stock.value();
        }
        return within;
    }

    [[nodiscard]] double stock() const { return m_stock.value(); }

    GoodsLedger ledger(std::vector<GoodsLine> lines)
    {
        m_ledger.lines = std::move(lines);
        m_ledger.in = m_in.value();
        m_ledger.out = m_out.value();
        m_ledger.found = m_found.value();
        m_ledger.stock = m_stock.value();
        return std::move(m_ledger);
    }

private:
    void count(const QString &date, double quantity, bool within)
    {
        if (date != m_counted) {
            if (within)
                m_found.add(-m_stock.value());
            m_stock = {};
            m_counted = date;
        }
        m_stock.add(quantity);
        if (within)
            m_found.add(quantity);
    }

    void move(bool purchased, double quantity, bool within)
    {
        m_stock.add(purchased ? quantity : -quantity);
        if (within)
            (purchased ? m_in : m_out).add(quantity);
    }

    const QString m_from;
    QString m_counted;
    base::ExactSum m_stock;
    base::ExactSum m_in;
    base::ExactSum m_out;
    base::ExactSum m_found;
    GoodsLedger m_ledger;
};

// Asks for each name once.
class Names
{
public:
    explicit Names(db::Connection &connection)
        : m_connection(connection)
    {}

    base::Result<QString> of(const book::Movement &movement)
    {
        const auto [place, isNew] = m_names.try_emplace({movement.kind.party, movement.counterpart});
        if (isNew) {
            auto name = book::nameOfCounterpart(m_connection, movement.kind.party, movement.counterpart);
            if (!name)
                return name;
            place->second = std::move(*name);
        }
        return place->second;
    }

private:
    db::Connection &m_connection;
    std::map<std::pair<book::Party, book::CounterpartKey>, QString> m_names;
};

} // namespace

base::Result<GoodsLedger> readGoodsLedger(db::Connection &connection, const book::Goods &goods,
                                          const book::Period &period)
{
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    auto found = book::movements(connection, {.kinds = {book::purchase, book::sale, book::stocktake},
                                              .days = book::Days::upTo(period.to),
                                              .lines = book::LinesOf::Goods,
                                              .goods = goods});
    if (!found)
        return found.error();
    std::ranges::stable_sort(*found, [](const book::Movement &a, const book::Movement &b) {
        return std::tuple(a.date, isCount(a)) < std::tuple(b.date, isCount(b));
    });
    Names names(connection);
    GoodsAccount account(period.from);
    std::vector<GoodsLine> lines;
    for (const book::Movement &movement : *found) {
        if (!account.take(movement))
            continue;
        const auto name = names.of(movement);
        if (!name)
            return name.error();
        lines.push_back({movement.slip, movement.kind, movement.date, movement.number, *name,
                         movement.quantity, movement.price, account.stock()});
    }
    return account.ledger(std::move(lines));
}

} // namespace reports

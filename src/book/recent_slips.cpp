#include "book/recent_slips.h"

#include "book/slip_columns.h"
#include "book/slip_selection.h"
#include "book/stored_values.h"
#include "text/dates.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

// In the order of the index of counterpart, kind and day, so that no more are read than are wanted.
base::Result<std::vector<RecentSlip>> newestOf(db::Connection &connection, const SlipKind &kind,
                                               qint64 counterpart, int most)
{
    const Condition condition = slipsOf({.kinds = {kind}, .counterpart = CounterpartKey(counterpart)});
    const auto found =
        connection.select(u"SELECT ID, "_s + columns::day + u", 伝票番号 FROM 入出庫マスター WHERE "_s +
                              condition.sql + u" ORDER BY 日付 DESC, ID DESC LIMIT ?"_s,
                          condition.values + QVariantList{most});
    if (!found)
        return found.error();
    std::vector<RecentSlip> slips;
    for (const QVariantList &row : found->rows)
        slips.push_back({row.at(0).toLongLong(), kind, row.at(1).toString(), row.at(2).toString()});
    return slips;
}

base::Status addAmounts(db::Connection &connection, std::vector<RecentSlip> &slips)
{
    for (RecentSlip &slip : slips) {
        const auto sum = connection.select(
            u"SELECT SUM("_s + columns::amountCount + u") FROM 入出庫サブ WHERE ID = ?"_s, {slip.id});
        if (!sum)
            return sum.error();
        const double counted = sum->rows.front().front().toDouble();
        slip.amount = std::abs(counted) < 1e18 ? counted / 10'000 : std::numeric_limits<double>::quiet_NaN();
    }
    return {};
}

base::Result<base::ExactSum> sumOf(db::Connection &connection, const SlipKind &kind, const Condition &slips)
{
    const auto sum = connection.select(u"SELECT SUM("_s + columns::amountCount + u") FROM "_s +
                                           columns::slipsWithLines + u" WHERE "_s + slips.sql,
                                       slips.values);
    if (!sum)
        return sum.error();
    return base::ExactSum::ofTenThousandths(sum->rows.front().front().toDouble()).times(kind.sign);
}

// Each piece as the index of counterpart, kind and day has it; one condition for all would read the whole.
std::vector<Condition> piecesOf(const QDate &from, const QDate &before)
{
    Condition within;
    if (from.isValid())
        within &= {u"日付 >= ?"_s, {text::stored(from)}};
    if (before.isValid())
        within &= {u"日付 < ?"_s, {text::stored(before)}};
    if (from.isValid() || !before.isValid())
        return {within};
    return {within, {u"日付 IS NULL"_s, {}}};
}

// Each line's goods once a slip, from the newest slip to the oldest one.
class Usual
{
public:
    void take(const RecentSlip &slip, const QVariantList &line)
    {
        const QString product = line.at(1).toString();
        const QString specification = line.at(2).toString();
        const QString key = product + u'\n' + specification;
        if (!m_places.contains(key)) {
            m_places.insert(key, m_goods.size());
            m_goods.push_back({product, specification, 0, slip.date, storedNumber(line.at(3))});
            m_lastSlip.push_back(0);
        }
        const std::size_t place = m_places.value(key);
        if (std::exchange(m_lastSlip[place], slip.id) != slip.id)
            ++m_goods[place].times;
    }

    std::vector<UsualGoods> most(int count)
    {
        std::stable_sort(m_goods.begin(), m_goods.end(),
                         [](const auto &a, const auto &b) { return a.times > b.times; });
        m_goods.resize(std::min(m_goods.size(), static_cast<std::size_t>(count)));
        return std::move(m_goods);
    }

private:
    std::vector<UsualGoods> m_goods;
    std::vector<qint64> m_lastSlip; // by goods
    QHash<QString, std::size_t> m_places;
};

} // namespace

base::Result<std::vector<RecentSlip>> recentSlips(db::Connection &connection, Party party, qint64 counterpart,
                                                  int most)
{
    std::vector<RecentSlip> slips;
    for (const SlipKind &kind : kindsOf(party)) {
        const auto newest = newestOf(connection, kind, counterpart, most);
        if (!newest)
            return newest.error();
        slips.insert(slips.end(), newest->begin(), newest->end());
    }
    std::sort(slips.begin(), slips.end(), [](const RecentSlip &a, const RecentSlip &b) {
        return a.date != b.date ? a.date > b.date : a.id > b.id;
    });
    slips.resize(std::min(slips.size(), static_cast<std::size_t>(most)));
    const base::Status added = addAmounts(connection, slips);
    return added ? base::Result<std::vector<RecentSlip>>(std::move(slips)) : added.error();
}

base::Result<std::vector<UsualGoods>> usualGoods(db::Connection &connection, const SlipKind &kind,
                                                 qint64 counterpart, int slips, int most)
{
    const auto newest = newestOf(connection, kind, counterpart, slips);
    if (!newest)
        return newest.error();
    const Condition goods = linesOf({.kinds = {kind}, .lines = LinesOf::Goods});
    Usual usual;
    for (const RecentSlip &slip : *newest) {
        const auto lines =
            connection.select(u"SELECT ID, 商品名, 規格, 単価 FROM 入出庫サブ WHERE ID = ? AND "_s +
                                  goods.sql + u" ORDER BY 明細ID"_s,
                              QVariantList{slip.id} + goods.values);
        if (!lines)
            return lines.error();
        for (const QVariantList &line : lines->rows)
            usual.take(slip, line);
    }
    return usual.most(most);
}

base::Result<QDate> oldestDay(db::Connection &connection, Party party, qint64 counterpart)
{
    QDate oldest;
    for (const SlipKind &kind : balanceKindsOf(party)) {
        const Condition condition = slipsOf({.kinds = {kind}, .counterpart = CounterpartKey(counterpart)});
        const auto found =
            connection.select(u"SELECT 日付 FROM 入出庫マスター WHERE "_s + condition.sql + u" AND "_s +
                                  columns::hasDay + u" ORDER BY 日付, ID LIMIT 1"_s,
                              condition.values);
        if (!found)
            return found.error();
        const QDate day = found->isEmpty()
                              ? QDate()
                              : QDate::fromString(found->rows.front().front().toString(), Qt::ISODate);
        if (day.isValid() && (!oldest.isValid() || day < oldest))
            oldest = day;
    }
    return oldest;
}

base::Result<base::ExactSum> balancePart(db::Connection &connection, Party party, qint64 counterpart,
                                         const QDate &from, const QDate &before)
{
    base::ExactSum balance;
    for (const SlipKind &kind : balanceKindsOf(party)) {
        for (const Condition &piece : piecesOf(from, before)) {
            Condition slips = slipsOf({.kinds = {kind}, .counterpart = CounterpartKey(counterpart)});
            slips &= piece;
            const auto sum = sumOf(connection, kind, slips);
            if (!sum)
                return sum;
            balance.add(*sum);
        }
    }
    return balance;
}

} // namespace book

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

// A slip's line of goods. Without a quantity its amount tells whether it is a return.
struct GoodsOfSlip
{
    QString product, specification;
    std::optional<double> price;
    double sold = 0; // in the whole slip
};

// What each slip sold of each goods, from the newest slip to the oldest one: a slip that sold them is one
// time, one that took them back takes one away.
class Usual
{
public:
    void take(const RecentSlip &slip, const db::Rows &lines)
    {
        for (const GoodsOfSlip &each : goodsOf(lines)) {
            UsualGoods &usual = placeOf(each);
            usual.times += each.sold < 0 ? -1 : 1;
            if (each.sold >= 0 && usual.lastSlip == 0) {
                usual.lastSlip = slip.id;
                usual.lastDate = slip.date;
                usual.price = each.price;
            }
        }
    }

    std::vector<UsualGoods> most(int count)
    {
        std::erase_if(m_goods, [](const UsualGoods &each) { return each.times <= 0; });
        std::stable_sort(m_goods.begin(), m_goods.end(),
                         [](const auto &a, const auto &b) { return a.times > b.times; });
        m_goods.resize(std::min(m_goods.size(), static_cast<std::size_t>(count)));
        return std::move(m_goods);
    }

private:
    static std::vector<GoodsOfSlip> goodsOf(const db::Rows &lines)
    {
        std::vector<GoodsOfSlip> goods;
        for (const QVariantList &line : lines.rows) {
            const QString product = line.at(0).toString();
            const QString specification = line.at(1).toString();
            auto place = std::ranges::find_if(goods, [&](const GoodsOfSlip &each) {
                return each.product == product && each.specification == specification;
            });
            if (place == goods.end())
                place = goods.insert(place, {product, specification, storedNumber(line.at(2))});
            place->sold += storedNumber(line.at(3)).value_or(storedNumber(line.at(4)).value_or(0));
        }
        return goods;
    }

    UsualGoods &placeOf(const GoodsOfSlip &goods)
    {
        const QString key = goods.product + u'\n' + goods.specification;
        if (!m_places.contains(key)) {
            m_places.insert(key, m_goods.size());
            m_goods.push_back({goods.product, goods.specification});
        }
        return m_goods[m_places.value(key)];
    }

    std::vector<UsualGoods> m_goods;
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
            connection.select(u"SELECT 商品名, 規格, 単価, 数量, 金額 FROM 入出庫サブ WHERE ID = ? AND "_s +
                                  goods.sql + u" ORDER BY 明細ID"_s,
                              QVariantList{slip.id} + goods.values);
        if (!lines)
            return lines.error();
        usual.take(slip, *lines);
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

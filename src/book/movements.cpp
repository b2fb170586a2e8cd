#include "book/movements.h"

#include "book/slip_columns.h"
#include "book/slip_slices.h"
#include "book/stored_values.h"

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

// One shape for all rows. What stocks do without is not even read for them.
QString rowColumns(bool goodsOnly)
{
    const auto unlessGoodsOnly = [goodsOnly](const QString &column) {
        return goodsOnly ? u"NULL"_s : column;
    };
    const QStringList list{columns::kind,
                           u"入出庫マスター.ID"_s,
                           columns::day + u" AS 日"_s,
                           u"商品名"_s,
                           u"規格"_s,
                           u"数量"_s,
                           u"単位"_s,
                           u"単価"_s,
                           columns::lineKey + u" AS 行"_s,
                           unlessGoodsOnly(u"伝票番号"_s),
                           unlessGoodsOnly(u"相手先ID"_s),
                           unlessGoodsOnly(u"金額"_s),
                           unlessGoodsOnly(columns::taxClass),
                           unlessGoodsOnly(columns::taxRate),
                           unlessGoodsOnly(columns::inclusive)};
    return list.join(u", "_s);
}

QString rowsStatement(const Condition &condition, bool goodsOnly)
{
    return u"SELECT "_s + rowColumns(goodsOnly) + u" FROM "_s + columns::slipsWithLines + u" WHERE "_s +
           condition.sql;
}

template <class T>
std::optional<T> valueOrNone(const QVariant &value)
{
    return value.isNull() ? std::optional<T>() : value.value<T>();
}

Movement movementFrom(const QVariantList &row)
{
    Movement movement;
    movement.kind = kindWith(row.at(0)).value_or(sale);
    movement.slip = row.at(1).toLongLong();
    movement.date = row.at(2).toString();
    movement.product = row.at(3).toString();
    movement.specification = row.at(4).toString();
    movement.quantity = storedNumber(row.at(5));
    movement.unit = row.at(6).toString();
    movement.price = storedNumber(row.at(7));
    movement.line = row.at(8).toLongLong();
    movement.number = row.at(9).toString();
    movement.counterpart = valueOrNone<qint64>(row.at(10));
    movement.amount = storedNumber(row.at(11)).value_or(0);
    movement.taxClass = goodsTaxFrom(row.at(12));
    movement.taxRate = storedNumber(row.at(13));
    movement.inclusive = valueOrNone<bool>(row.at(14));
    return movement;
}

} // namespace

base::Result<std::vector<Movement>> movements(db::Connection &connection, const Selection &selection)
{
    Condition condition = slipsOf(selection);
    condition &= linesOf(selection);
    const auto rows = connection.select(
        rowsStatement(condition, false) + u" ORDER BY 日, 入出庫マスター.ID, 行"_s, condition.values);
    if (!rows)
        return rows.error();
    std::vector<Movement> found;
    found.reserve(rows->rows.size());
    for (const QVariantList &row : rows->rows)
        found.push_back(movementFrom(row));
    return found;
}

base::Status visitGoodsMovements(db::Connection &connection, const Selection &selection,
                                 const base::Progress &progress,
                                 const std::function<void(const Movement &)> &visit)
{
    Condition condition = slipsOf(selection);
    condition &= linesOf(selection);
    return forSlipSlices(connection, progress, [&](const Condition &slice) -> base::Status {
        Condition within = condition;
        within &= slice;
        const auto rows = connection.select(rowsStatement(within, true), within.values);
        if (!rows)
            return rows.error();
        for (const QVariantList &row : rows->rows)
            visit(movementFrom(row));
        return {};
    });
}

} // namespace book

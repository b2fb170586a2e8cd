#include "book/movements.h"

#include "book/slip_columns.h"
#include "book/slip_slices.h"
#include "book/stored_values.h"
#include "db/statement.h"

#include <string>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

// What stocks are made of; they do without the rest.
const QStringList goodsColumns{columns::kind,
                               u"入出庫マスター.ID"_s,
                               columns::day + u" AS 日"_s,
                               u"商品名"_s,
                               u"規格"_s,
                               u"数量"_s,
                               u"単位"_s,
                               u"単価"_s,
                               columns::lineKey + u" AS 行"_s};
const QStringList furtherColumns{u"伝票番号"_s,     u"相手先ID"_s,    u"金額"_s,
                                 columns::taxClass, columns::taxRate, columns::inclusive};

QString rowsStatement(const QStringList &wanted, const Condition &condition)
{
    return u"SELECT "_s + wanted.join(u", "_s) + u" FROM "_s + columns::slipsWithLines + u" WHERE "_s +
           condition.sql;
}

// Days and names of goods come again with every line: each is made into a text once.
class Texts
{
public:
    QString of(QByteArrayView utf8)
    {
        if (utf8.isNull())
            return {};
        const std::string_view bytes(utf8.data(), static_cast<std::size_t>(utf8.size()));
        auto known = m_texts.find(bytes);
        if (known == m_texts.end())
            known = m_texts.emplace(bytes, QString::fromUtf8(utf8)).first;
        return known->second;
    }

private:
    struct Hash : std::hash<std::string_view>
    {
        using is_transparent = void;
    };
    std::unordered_map<std::string, QString, Hash, std::equal_to<>> m_texts;
};

Movement goodsFrom(const db::Statement &row, Texts &texts)
{
    Movement movement;
    movement.kind = kindWith(row.text(0)).value_or(sale);
    movement.slip = row.integer(1);
    movement.date = texts.of(row.text(2));
    movement.product = texts.of(row.text(3));
    movement.specification = texts.of(row.text(4));
    movement.quantity = storedNumber(row.variant(5));
    movement.unit = texts.of(row.text(6));
    movement.price = storedNumber(row.variant(7));
    movement.line = row.integer(8);
    return movement;
}

Movement movementFrom(const db::Statement &row, Texts &texts)
{
    Movement movement = goodsFrom(row, texts);
    movement.number = QString::fromUtf8(row.text(9));
    movement.counterpart = storedKey(row.variant(10));
    movement.amount = storedNumber(row.variant(11)).value_or(0);
    movement.taxClass = goodsTaxFrom(row.variant(12));
    movement.taxRate = storedNumber(row.variant(13));
    if (const QVariant inclusive = row.variant(14); !inclusive.isNull())
        movement.inclusive = inclusive.toBool();
    return movement;
}

} // namespace

base::Result<std::vector<Movement>> movements(db::Connection &connection, const Selection &selection)
{
    Condition condition = slipsOf(selection);
    condition &= linesOf(selection);
    Texts texts;
    std::vector<Movement> found;
    const base::Status read = connection.visit(
        rowsStatement(goodsColumns + furtherColumns, condition) + u" ORDER BY 日, 入出庫マスター.ID, 行"_s,
        condition.values,
        [&texts, &found](const db::Statement &row) { found.push_back(movementFrom(row, texts)); });
    return read ? base::Result<std::vector<Movement>>(std::move(found)) : read.error();
}

base::Status visitGoodsMovements(db::Connection &connection, const Selection &selection,
                                 const base::Progress &progress,
                                 const std::function<void(const Movement &)> &visit)
{
    Condition condition = slipsOf(selection);
    condition &= linesOf(selection);
    Texts texts;
    return forSlipSlices(connection, progress, [&](const Condition &slice) {
        Condition within = condition;
        within &= slice;
        return connection.visit(rowsStatement(goodsColumns, within), within.values,
                                [&texts, &visit](const db::Statement &row) { visit(goodsFrom(row, texts)); });
    });
}

} // namespace book

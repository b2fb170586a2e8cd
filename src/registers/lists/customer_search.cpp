#include "registers/lists/customer_search.h"

#include "db/condition.h"
#include "db/connection.h"
#include "db/recordset.h"
#include "text/dates.h"
#include "text/like.h"
#include "text/numbers.h"
#include "text/width.h"

#include <array>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

enum class Comparison { None, Number, Text, Date };

enum class PartialMatch {
    Anywhere,
    AtStartInOwnOrder, // only from the start of the text while the list is in the order of the column
};

struct Item
{
    const char16_t *name;
    const char16_t *column;
    Comparison comparison;
    const char16_t *ownOrder; // what "検索項目昇順" orders by
    const char16_t *hint;
    PartialMatch partial = PartialMatch::Anywhere;
};

constexpr const char16_t *textHint = u"一部だけでも探せます";
constexpr const char16_t *dateHint = u"例：2026/04/01（一部だけなら 2026/04）";

constexpr std::array<Item, 18> items{{
    {u"すべて選択", u"", Comparison::None, u"納品先ID", u""},
    {u"納品先区分", u"納品先.区分ID", Comparison::Number, u"納品先.区分ID", u"区分の番号"},
    {u"納品先名", u"納品先名キー", Comparison::Text, u"納品先名キー", textHint},
    {u"ﾌﾘｶﾞﾅ", u"フリガナ", Comparison::Text, u"フリガナ", textHint},
    {u"住所1", u"住所1", Comparison::Text, u"住所1", textHint},
    {u"住所2", u"住所2", Comparison::Text, u"住所2", textHint},
    {u"TEL1", u"TEL1", Comparison::Text, u"TEL1", textHint},
    {u"TEL2", u"TEL2", Comparison::Text, u"TEL2", textHint},
    {u"FAX", u"FAX", Comparison::Text, u"FAX", textHint},
    {u"ﾒｰﾙｱﾄﾞﾚｽ", u"メール", Comparison::Text, u"メール", textHint},
    {u"登録日", u"登録日", Comparison::Date, u"登録日", dateHint},
    {u"更新日", u"更新日", Comparison::Date, u"更新日", dateHint},
    {u"メモ", u"メモ", Comparison::Text, u"メモ", textHint},
    {u"誕生日", u"誕生日", Comparison::Date, u"誕生日", dateHint},
    {u"消費税区分", u"消費税区分", Comparison::Number, u"納品先ID",
     u"0 外税（納品時）　1 外税（請求時）　2 内税"},
    {u"締め日", u"締め日", Comparison::Number, u"締め日", u"0 末日　1～30 その日"},
    {u"コード", u"コード", Comparison::Text, u"コード", textHint, PartialMatch::AtStartInOwnOrder},
    {u"元帳出力", u"元帳出力", Comparison::Number, u"納品先ID", u"1 出力する　0 出力しない"},
}};

struct Order
{
    const char16_t *name;
    const char16_t *columns; // empty: the item's own
};

constexpr std::array<Order, 5> orders{{
    {u"登録日昇順", u"登録日"},
    {u"更新日降順", u"更新日 DESC"},
    {u"ﾌﾘｶﾞﾅ昇順", u"フリガナ"},
    {u"登録区分昇順", u"納品先.区分ID"},
    {u"検索項目昇順", u""},
}};

const Item *itemAt(int place)
{
    return place >= 0 && place < static_cast<int>(items.size()) ? &items[static_cast<std::size_t>(place)]
                                                                : nullptr;
}

QString orderOf(const CustomerQuery &query, const Item &item)
{
    const auto place = static_cast<std::size_t>(query.order);
    const bool own = query.order < 0 || place >= orders.size() || *orders[place].columns == u'\0';
    return QString::fromUtf16(own ? item.ownOrder : orders[place].columns);
}

bool isInOwnOrder(const CustomerQuery &query)
{
    return query.order < 0 || query.order == static_cast<int>(orders.size()) - 1;
}

db::Condition numberCondition(const QString &column, const QString &typed)
{
    // NULL, which equals nothing, where no number was typed.
    const auto number = text::parseNumber(typed);
    return {column + u" = ?"_s, {number ? QVariant(*number) : QVariant()}};
}

// LIKE here too: a name typed in full width is exactly the one that is stored in half width.
db::Condition exactTextCondition(const QString &column, const QString &typed)
{
    return {column + u" LIKE ? ESCAPE '\\'"_s, {text::literalPattern(typed)}};
}

db::Condition textCondition(const QString &column, const QString &typed, bool anywhere)
{
    if (anywhere)
        return db::keyHolds(column, typed);
    return {column + u" LIKE ? ESCAPE '\\'"_s, {text::literalPattern(typed) + u'%'}};
}

// Stored are yyyy-MM-dd and, as birthdays, whatever was typed: with and without leading zeros.
db::Condition dateCondition(const QString &column, const QString &typed, bool exact)
{
    const QString shown = u"replace("_s + column + u", '-', '/')"_s;
    if (!exact) {
        const QString part = text::toHalfWidthAscii(typed).replace(u'-', u'/');
        return {shown + u" LIKE ? ESCAPE '\\'"_s, {u'%' + text::literalPattern(part) + u'%'}};
    }
    const auto date = text::parseDate(typed);
    const auto form = [&](const QString &format) {
        return date ? QVariant(date->toString(format)) : QVariant();
    };
    return {shown + u" IN (?, ?)"_s, {form(u"yyyy/MM/dd"_s), form(u"yyyy/M/d"_s)}};
}

db::Condition conditionOf(const CustomerQuery &query, const Item &item)
{
    const QString column = QString::fromUtf16(item.column);
    switch (item.comparison) {
    case Comparison::Number:
        return numberCondition(column, query.condition);
    case Comparison::Date:
        return dateCondition(column, query.condition, query.exact);
    case Comparison::Text:
        if (query.exact)
            return exactTextCondition(column, query.condition);
        return textCondition(column, query.condition,
                             item.partial == PartialMatch::Anywhere || !isInOwnOrder(query));
    case Comparison::None:
        break;
    }
    return {};
}

template <class Row, std::size_t count>
QStringList namesOf(const std::array<Row, count> &table)
{
    QStringList names;
    for (const Row &row : table)
        names << QString::fromUtf16(row.name);
    return names;
}

} // namespace

QStringList customerSearchItems() { return namesOf(items); }

QStringList customerSearchOrders() { return namesOf(orders); }

QString customerSearchHint(int item)
{
    const Item *found = itemAt(item);
    return found ? QString::fromUtf16(found->hint) : QString();
}

std::optional<QueryLack> lackOf(const CustomerQuery &query)
{
    const Item *item = itemAt(query.item);
    if (!item)
        return QueryLack::Item;
    if (item->comparison != Comparison::None && query.condition.isEmpty())
        return QueryLack::Condition;
    return std::nullopt;
}

base::Status openCustomersFound(db::Recordset &customers, const CustomerQuery &query)
{
    const Item *item = itemAt(query.item);
    if (!item)
        return customers.open({.table = u"納品先"_s, .where = u"0"_s});
    const db::Condition condition = conditionOf(query, *item);
    const QString join = u"納品先.区分ID = 登録区分.区分ID"_s;
    return customers.open(
        {.columns = u"納品先.*"_s,
         .table = u"納品先"_s,
         .where = condition.sql.isEmpty() ? join : u"("_s + join + u") AND ("_s + condition.sql + u")"_s,
         .order = {orderOf(query, *item)},
         .values = condition.values,
         .alongside = u"登録区分"_s,
         .fromAllOver = true});
}

} // namespace registers

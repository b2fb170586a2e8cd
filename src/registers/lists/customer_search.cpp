#include "registers/lists/customer_search.h"

#include "db/condition.h"
#include "db/connection.h"
#include "db/query.h"
#include "db/recordset.h"
#include "registers/counterpart.h"
#include "registers/customer.h"
#include "text/dates.h"
#include "text/like.h"
#include "text/numbers.h"
#include "text/width.h"

#include <QRegularExpression>

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

// Readings in the order of the sounds. Search keys stay in their own: a search that finds a great part of a
// large register would take twice as long.
QString orderOf(const CustomerQuery &query, const Item &item)
{
    const auto place = static_cast<std::size_t>(query.order);
    const bool own = query.order < 0 || place >= orders.size() || *orders[place].columns == u'\0';
    const QString columns = QString::fromUtf16(own ? item.ownOrder : orders[place].columns);
    return columns == u"フリガナ"_s ? db::inJapaneseOrder(columns) : columns;
}

bool isInOwnOrder(const CustomerQuery &query)
{
    return query.order < 0 || query.order == static_cast<int>(orders.size()) - 1;
}

std::optional<double> numberNamed(const QStringList &names, const QString &typed)
{
    for (int number = 0; number < names.size(); ++number) {
        if (foldedName(names.at(number)) == foldedName(typed))
            return number;
    }
    return std::nullopt;
}

QStringList namesOfNumbers(const QString &column)
{
    if (column == u"消費税区分"_s)
        return taxClassNames();
    if (column == u"締め日"_s)
        return closingDayNames();
    return column == u"元帳出力"_s ? QStringList{u"しない"_s, u"する"_s} : QStringList();
}

db::Condition numberCondition(const QString &column, const QString &typed)
{
    auto number = text::parseNumber(typed);
    if (!number)
        number = numberNamed(namesOfNumbers(column), typed);
    // NULL, which equals nothing, where no number was typed.
    return {column + u" = ?"_s, {number ? QVariant(*number) : QVariant()}};
}

// A category by its number or by its whole name.
db::Condition categoryCondition(const QString &typed)
{
    return text::parseNumber(typed)
               ? numberCondition(u"納品先.区分ID"_s, typed)
               : db::Condition{u"登録区分.区分名 LIKE ? ESCAPE '\\'"_s, {text::literalPattern(typed)}};
}

// LIKE here too: a name typed in full width is exactly the one that is stored in half width.
// A reading also as readings are stored.
db::Condition exactTextCondition(const QString &column, const QString &typed)
{
    const QString isTyped = column + u" LIKE ? ESCAPE '\\'"_s;
    if (column != u"フリガナ"_s)
        return {isTyped, {text::literalPattern(typed)}};
    return {u'(' + isTyped + u" OR "_s + isTyped + u')',
            {text::literalPattern(typed), text::literalPattern(text::normalisedReading(typed))}};
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

// The days that \a typed is: one, or those of a month ("2026/4") or of a year.
std::optional<std::pair<QDate, QDate>> daysOf(const QString &typed)
{
    static const QRegularExpression part(uR"(\A([0-9]{4})(?:[/.-]([0-9]{1,2}))?\z)"_s);
    const QString plain = text::toHalfWidthAscii(typed).trimmed();
    if (const auto day = text::parseAnyDate(plain))
        return std::pair(*day, *day);
    const auto match = part.match(plain);
    const bool isYear = match.hasMatch() && match.captured(2).isEmpty();
    const QDate first(match.captured(1).toInt(), isYear ? 1 : match.captured(2).toInt(), 1);
    if (!match.hasMatch() || !first.isValid())
        return std::nullopt;
    return std::pair(first, (isYear ? first.addYears(1) : first.addMonths(1)).addDays(-1));
}

// A birthday is stored as it was typed, and found by the day that it is.
db::Condition daysCondition(const QString &written, const CustomerTerm &term)
{
    const QString column = written == u"誕生日"_s ? db::dayIn(written) : written;
    const auto first = daysOf(term.condition);
    const auto last = daysOf(term.until);
    const auto bound = [](const auto &days, bool isEnd) {
        return days ? QVariant(text::stored(isEnd ? days->second : days->first)) : QVariant();
    };
    db::Condition condition;
    if (!term.condition.isEmpty())
        condition &= {column + u" >= ?"_s, {bound(first, false)}};
    condition &= {column + u" <= ?"_s, {bound(last, true)}};
    return condition;
}

// A day that is written out (R2.4.1, 令和2年4月1日) is that day, however the database writes it; part of a
// birthday that is stored as it was typed it may be, too.
db::Condition writtenDayCondition(const QString &column, const CustomerTerm &term)
{
    CustomerTerm day = term;
    day.until = term.condition;
    const db::Condition isDay = daysCondition(column, day);
    const db::Condition holds = dateCondition(column, term.condition, false);
    return {u"(("_s + isDay.sql + u") OR "_s + holds.sql + u')', isDay.values + holds.values};
}

db::Condition daySearch(const QString &column, const CustomerTerm &term)
{
    if (!term.until.isEmpty())
        return daysCondition(column, term);
    const bool isWrittenOut = !text::parseDate(term.condition) && text::parseWrittenDate(term.condition);
    return isWrittenOut ? writtenDayCondition(column, term)
                        : dateCondition(column, term.condition, term.exact);
}

// A part of a day is searched for as a text; what stands for a day, or bounds a span, has to be one.
bool isNoDay(const QString &typed, bool isBound)
{
    return !typed.isEmpty() && (isBound || text::isWrittenAsDay(typed)) && !daysOf(typed);
}

db::Condition conditionOf(const CustomerTerm &term, const Item &item, bool isInOwnOrder)
{
    const QString column = QString::fromUtf16(item.column);
    switch (item.comparison) {
    case Comparison::Number:
        return &item == &items[categoryItem] ? categoryCondition(term.condition)
                                             : numberCondition(column, term.condition);
    case Comparison::Date:
        return daySearch(column, term);
    case Comparison::Text:
        if (term.exact)
            return exactTextCondition(column, term.condition);
        return textCondition(column, term.condition, item.partial == PartialMatch::Anywhere || !isInOwnOrder);
    case Comparison::None:
        break;
    }
    return {};
}

std::optional<QueryLack> lackOfTerm(const CustomerTerm &term)
{
    const Item *item = itemAt(term.item);
    if (!item)
        return QueryLack::Item;
    if (item->comparison != Comparison::None && term.condition.isEmpty() && term.until.isEmpty())
        return QueryLack::Condition;
    const bool isSpan = !term.until.isEmpty();
    if (item->comparison == Comparison::Date &&
        (isNoDay(term.condition, isSpan) || isNoDay(term.until, isSpan)))
        return QueryLack::Day;
    return std::nullopt;
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

bool isSearchedByDays(int item)
{
    const Item *found = itemAt(item);
    return found && found->comparison == Comparison::Date;
}

std::vector<masters::Entry> customerSearchNames(int item, const std::vector<masters::Entry> &categories)
{
    const Item *found = itemAt(item);
    if (item == categoryItem)
        return categories;
    std::vector<masters::Entry> entries;
    for (const QString &name : found ? namesOfNumbers(QString::fromUtf16(found->column)) : QStringList())
        entries.push_back({static_cast<qint64>(entries.size()), name});
    return entries;
}

std::optional<QueryLack> lackOfFurther(const CustomerTerm &term)
{
    const bool isNone = term.item < 0 && term.condition.isEmpty() && term.until.isEmpty();
    return isNone ? std::nullopt : lackOfTerm(term);
}

std::optional<QueryLack> lackOf(const CustomerQuery &query)
{
    if (const auto lack = lackOfTerm(query.first()))
        return lack;
    for (const CustomerTerm &term : query.further) {
        if (const auto lack = lackOfFurther(term))
            return lack;
    }
    return std::nullopt;
}

base::Status openCustomersFound(db::Recordset &customers, const CustomerQuery &query)
{
    const Item *item = itemAt(query.item);
    if (!item)
        return customers.open({.table = u"納品先"_s, .where = u"0"_s});
    db::Condition condition = conditionOf(query.first(), *item, isInOwnOrder(query));
    for (const CustomerTerm &term : query.further) {
        if (const Item *further = itemAt(term.item); further && further->comparison != Comparison::None)
            condition &= conditionOf(term, *further, false);
    }
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

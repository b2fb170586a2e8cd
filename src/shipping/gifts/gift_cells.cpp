#include "shipping/gifts/gift_cells.h"

#include "book/tax.h"
#include "text/dates.h"
#include "text/format_value.h"
#include "text/numbers.h"
#include "text/postal_code.h"
#include "text/width.h"

#include <QRegularExpression>

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;
using base::Format;

namespace shipping
{

namespace
{

constexpr qsizetype longestText = 255; // characters; a column of the users' older files holds no more

const QString none = u"－"_s;

const std::array<base::Column, giftColumnCount> looks{{
    {u"発行"_s, Format::Text, 4},
    {u"お届け先名"_s, Format::Text, 20},
    {u"名前２"_s, Format::Text, 12},
    {u"郵便番号"_s, Format::Text, 9},
    {u"住所１"_s, Format::Text, 28},
    {u"住所２"_s, Format::Text, 16},
    {u"電話"_s, Format::Text, 13},
    {u"品名"_s, Format::Text, 18},
    {u"価格"_s, Format::Amount, 8},
    {u"送料"_s, Format::Amount, 7},
    {u"配達予定日"_s, Format::Date, 10},
    {u"時間帯"_s, Format::Text, 7},
    {u"クール"_s, Format::Text, 6},
    {u"のし上書き"_s, Format::Text, 10},
    {u"名入れ"_s, Format::Text, 10},
    {u"状態"_s, Format::Text, 24},
}};

// Of the columns that a consignee has of his own.
QString Party::*partIn(GiftColumn column)
{
    switch (column) {
    case GiftColumn::Name1:
        return &Party::name1;
    case GiftColumn::Name2:
        return &Party::name2;
    case GiftColumn::Zip:
        return &Party::zip;
    case GiftColumn::Address1:
        return &Party::address1;
    case GiftColumn::Address2:
        return &Party::address2;
    case GiftColumn::Tel:
        return &Party::tel;
    default:
        return nullptr;
    }
}

QString shownTerm(GiftTerm term, const QVariant &value)
{
    if (value.isNull())
        return {};
    if (term == GiftTerm::Delivery)
        return text::formatDate(value.toDate());
    const bool isAmount = term == GiftTerm::Price || term == GiftTerm::Carriage;
    return isAmount ? text::formatAmount(value.toDouble()) : value.toString();
}

base::Result<QVariant> readText(const QString &heading, const QString &typed)
{
    if (typed.size() > longestText)
        return base::Error{u"%1が長すぎます。%2文字以内で入力してください。"_s.arg(heading).arg(longestText)};
    return QVariant(typed);
}

base::Result<QVariant> readAmount(const QString &heading, const QString &typed)
{
    const auto number = text::parseNumber(typed);
    if (!number || *number < 0 || *number != std::floor(*number))
        return base::Error{u"%1には、円の数字を入力してください。"_s.arg(heading)};
    if (*number > book::greatestAmount)
        return base::Error{u"%1が大きすぎます。９０００億以内になるように入力してください。"_s.arg(heading)};
    return QVariant(*number);
}

// "12/20", "１２月２０日": of the sheet's year, or of the next one.
std::optional<QDate> nextDay(const QString &typed, const QDate &accepted)
{
    static const QRegularExpression monthAndDay(u"^([0-9]{1,2})[/月.-]([0-9]{1,2})日?$"_s);
    const auto match = monthAndDay.match(text::toHalfWidthAscii(typed).trimmed());
    if (!match.hasMatch() || !accepted.isValid())
        return std::nullopt;
    const int month = match.captured(1).toInt();
    const int day = match.captured(2).toInt();
    for (const int year : {accepted.year(), accepted.year() + 1}) {
        const QDate date(year, month, day);
        if (date.isValid() && date >= accepted)
            return date;
    }
    return std::nullopt;
}

base::Result<QVariant> readDay(const QString &typed, const QDate &accepted)
{
    auto date = text::parseAnyDate(typed);
    if (!date)
        date = nextDay(typed, accepted);
    if (!date)
        return base::Error{
            u"「%1」は日付として読めません。「2026/12/20」か「12/20」のように入力してください。"_s.arg(
                typed.left(30))};
    return QVariant(*date);
}

// "14時〜16時" as "14-16", "午前" as "午前中".
base::Result<QVariant> readTimeSlot(const QString &typed)
{
    static const QRegularExpression between(u"時?[~〜～−ー－-]"_s);
    QString word = text::toHalfWidthAscii(typed).trimmed().replace(between, u"-"_s).remove(u'時');
    if (word == u"午前"_s || word.compare(u"AM"_s, Qt::CaseInsensitive) == 0)
        word = u"午前中"_s;
    if (timeSlots().contains(word))
        return QVariant(word);
    return base::Error{
        u"時間帯の欄には「%1」のどれかを入力してください。"_s.arg(timeSlots().mid(1).join(u"」「"_s))};
}

base::Result<QVariant> readCooling(const QString &typed)
{
    for (const QString &kind : coolings().mid(1)) {
        if (typed.contains(kind))
            return QVariant(kind);
    }
    return base::Error{
        u"クールの欄には「%1」のどれかを入力してください。"_s.arg(coolings().mid(1).join(u"」「"_s))};
}

base::Result<QVariant> readTerm(GiftTerm term, const QString &heading, const QString &typed,
                                const QDate &accepted)
{
    switch (term) {
    case GiftTerm::Price:
    case GiftTerm::Carriage:
        return readAmount(heading, typed);
    case GiftTerm::Delivery:
        return readDay(typed, accepted);
    case GiftTerm::TimeSlot:
        return readTimeSlot(typed);
    case GiftTerm::Cooling:
        return readCooling(typed);
    default:
        return readText(heading, typed);
    }
}

// A cell of a spreadsheet may have line breaks.
QString inOneLine(QString typed)
{
    for (QChar &c : typed) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return typed.trimmed();
}

bool isDash(const QString &typed) { return typed.size() == 1 && u"-－ー−―‐"_s.contains(typed.front()); }

base::Status enterTerm(GiftRow &row, GiftTerm term, const QString &heading, const QString &typed,
                       const QDate &accepted)
{
    if (typed.isEmpty()) {
        if (term == GiftTerm::Price)
            row.pricedGoods.clear();
        row.dropOwn(term);
        return {};
    }
    if (isDash(typed)) {
        row.setOwn(term, {});
        return {};
    }
    const auto value = readTerm(term, heading, typed, accepted);
    if (!value)
        return value.error();
    if (term == GiftTerm::Price)
        row.pricedGoods.clear();
    row.setOwn(term, *value);
    return {};
}

// A line whose name is another one is another person's.
base::Status enterPart(GiftRow &row, GiftColumn column, const QString &typed)
{
    const auto value = readText(lookOf(column).heading, typed);
    if (!value)
        return value.error();
    QString &part = row.consignee.*partIn(column);
    const QString before = part;
    part = typed;
    if (column == GiftColumn::Zip)
        part = text::completePostalCode(typed).value_or(typed);
    if (column == GiftColumn::Tel)
        part = text::withPlainHyphens(text::toHalfWidthAscii(typed));
    if (column == GiftColumn::Name1 && !before.isEmpty() && part != before)
        row.consigneeId = 0;
    return {};
}

} // namespace

const base::Column &lookOf(GiftColumn column) { return looks[std::size_t(column)]; }

std::optional<GiftTerm> termIn(GiftColumn column)
{
    switch (column) {
    case GiftColumn::Goods:
        return GiftTerm::Goods;
    case GiftColumn::Price:
        return GiftTerm::Price;
    case GiftColumn::Carriage:
        return GiftTerm::Carriage;
    case GiftColumn::Delivery:
        return GiftTerm::Delivery;
    case GiftColumn::TimeSlot:
        return GiftTerm::TimeSlot;
    case GiftColumn::Cooling:
        return GiftTerm::Cooling;
    case GiftColumn::Memo1:
        return GiftTerm::Memo1;
    case GiftColumn::Memo2:
        return GiftTerm::Memo2;
    default:
        return std::nullopt;
    }
}

QString shownCell(const GiftOrder &order, const GiftRow &row, GiftColumn column)
{
    if (const auto term = termIn(column)) {
        if (!row.has(*term))
            return shownTerm(*term, termOf(order.common, *term));
        const QVariant value = termOf(row.own, *term);
        return value.isNull() ? none : shownTerm(*term, value);
    }
    if (column == GiftColumn::State)
        return row.state;
    const auto part = partIn(column);
    return part ? row.consignee.*part : QString();
}

QString typedCell(const GiftRow &row, GiftColumn column)
{
    if (const auto term = termIn(column)) {
        const QVariant value = termOf(row.own, *term);
        return !row.has(*term) ? QString() : value.isNull() ? none : shownTerm(*term, value);
    }
    const auto part = partIn(column);
    return part ? row.consignee.*part : QString();
}

base::Status enterCell(GiftRow &row, GiftColumn column, const QString &typed, const QDate &accepted)
{
    const QString text = inOneLine(typed);
    if (const auto term = termIn(column))
        return enterTerm(row, *term, lookOf(column).heading, text, accepted);
    if (partIn(column))
        return enterPart(row, column, text);
    return base::Error{u"「%1」の欄には入力できません。"_s.arg(lookOf(column).heading)};
}

base::Status enterCommon(GiftTerms &terms, GiftColumn column, const QString &typed, const QDate &accepted)
{
    const auto term = termIn(column);
    GiftRow row;
    if (const base::Status taken = enterCell(row, column, typed, accepted); !taken || !term)
        return taken;
    setTerm(terms, *term, termOf(row.own, *term));
    return {};
}

QString shownCommon(const GiftTerms &terms, GiftTerm term) { return shownTerm(term, termOf(terms, term)); }

} // namespace shipping

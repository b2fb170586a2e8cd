#include "book/slip_selection.h"

#include "book/slip_columns.h"
#include "text/dates.h"

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

using text::stored;

Condition ofKinds(const std::vector<SlipKind> &kinds)
{
    QVariantList letters;
    for (const SlipKind &kind : kinds)
        letters << QString(QChar(kind.letter));
    const QString places = QStringList(letters.size(), u"?"_s).join(u", "_s);
    return {columns::kind + u" IN ("_s + places + u')', letters};
}

Condition ofCounterpart(CounterpartKey counterpart)
{
    return counterpart ? Condition{u"相手先ID = ?"_s, {*counterpart}} : Condition{u"相手先ID IS NULL"_s, {}};
}

Condition ofCounterparts(const std::vector<qint64> &counterparts)
{
    QVariantList keys;
    for (const qint64 key : counterparts)
        keys << key;
    return {u"相手先ID IN ("_s + QStringList(keys.size(), u"?"_s).join(u", "_s) + u')', keys};
}

// An unset text would be bound as NULL, which equals nothing.
QString written(const QString &text) { return text.isNull() ? u""_s : text; }

// Only what seems to be of a later day is asked whether it is one.
Condition ofDays(const Days &days)
{
    if (days.onlyUndated)
        return {u"NOT "_s + columns::hasDay, {}};
    Condition condition;
    if (days.from.isValid())
        condition &= {u"日付 >= ?"_s, {stored(days.from)}};
    if (days.from.isValid() && days.to.isValid())
        condition &= {u"日付 <= ?"_s, {stored(days.to)}};
    if (days.from.isValid())
        condition &= {columns::hasDay, {}};
    else if (days.to.isValid())
        condition &= {u"(日付 <= ? OR NOT "_s + columns::hasDay + u')', {stored(days.to)}};
    return condition;
}

} // namespace

Condition slipsOf(const Selection &selection)
{
    Condition condition = ofKinds(selection.kinds);
    if (selection.counterpart)
        condition &= ofCounterpart(*selection.counterpart);
    if (selection.counterparts)
        condition &= ofCounterparts(*selection.counterparts);
    condition &= ofDays(selection.days);
    return condition;
}

Condition linesOf(const Selection &selection)
{
    Condition condition;
    if (selection.lines == LinesOf::Goods)
        condition &= {u"COALESCE(商品名, '') <> "_s + columns::taxName, {}};
    else if (selection.lines == LinesOf::Tax)
        condition &= {columns::isTax, {}};
    if (const auto &goods = selection.goods) {
        condition &= {u"COALESCE(商品名, '') = ? AND COALESCE(規格, '') = ? AND COALESCE(単位, '') = ?"_s,
                      {written(goods->product), written(goods->specification), written(goods->unit)}};
    }
    return condition;
}

} // namespace book

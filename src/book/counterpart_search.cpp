#include "book/counterpart_search.h"

#include "text/like.h"
#include "text/width.h"

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

// Customers that were changed on the same day follow their readings, as in the register.
QStringList orderOf(Party party)
{
    return party == Party::Customer ? QStringList{u"更新日 DESC"_s, u"フリガナ"_s, u"納品先名キー"_s}
                                    : QStringList{u"仕入先ID"_s};
}

} // namespace

const CounterpartSearch customerSearch{
    Party::Customer,
    u"納品先ID, 納品先名1, 納品先名2, 郵便番号, 住所1, 住所2, TEL1, コード, 更新日, 消費税区分, 納品先名キー",
    u"(納品先名キー LIKE ? ESCAPE '\\')",
};

const CounterpartSearch supplierSearch{
    Party::Supplier,
    u"仕入先ID, 仕入先名1, 仕入先名2, 住所1, TEL1, 消費税区分, 仕入先名キー",
    u"(仕入先名キー LIKE ? ESCAPE '\\')",
};

const CounterpartSearch payeeSearch{
    Party::Supplier,
    u"仕入先ID, 仕入先名1, 仕入先名2, 住所1, TEL1, 消費税区分, コード, 仕入先名キー",
    u"(仕入先名キー LIKE ? ESCAPE '\\')",
};

QString tableOf(Party party) { return party == Party::Customer ? u"納品先"_s : u"仕入先"_s; }

base::Status searchCounterparts(db::Recordset &found, const CounterpartSearch &search, const QString &text)
{
    // Search keys hold no full-width blanks, names as typed often do: 山田　太郎.
    const QString pattern = u'%' + text::literalPattern(text::withoutFullWidthBlanks(text)) + u'%';
    return found.open({.columns = QString::fromUtf16(search.columns),
                       .table = tableOf(search.party),
                       .where = QString::fromUtf16(search.condition),
                       .order = orderOf(search.party),
                       .values = {pattern}});
}

base::Status openCounterpart(db::Recordset &found, const CounterpartSearch &search, qint64 id)
{
    db::Query query{.columns = QString::fromUtf16(search.columns), .table = tableOf(search.party)};
    query.where = query.key() + u" = ?"_s;
    query.values = {id};
    return found.open(query);
}

} // namespace book

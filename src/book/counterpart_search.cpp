#include "book/counterpart_search.h"

#include "text/width.h"

using namespace Qt::StringLiterals;

namespace book
{

const CounterpartSearch customerSearch{
    Party::Customer,
    u"SELECT 納品先ID, 納品先名1, 納品先名2, 郵便番号, 住所1, 住所2, TEL1, コード, 更新日, 消費税区分, "
    "納品先名キー FROM 納品先 WHERE (納品先名キー LIKE ?) ORDER BY 更新日 DESC",
    u"SELECT 納品先ID, 納品先名1, 納品先名2, 郵便番号, 住所1, 住所2, TEL1, コード, 更新日, 消費税区分, "
    "納品先名キー FROM 納品先 WHERE 納品先ID = ?",
    u"納品先ID",
};

const CounterpartSearch supplierSearch{
    Party::Supplier,
    u"SELECT 仕入先ID, 仕入先名1, 仕入先名2, 住所1, TEL1, 消費税区分, 仕入先名キー FROM 仕入先 "
    "WHERE (仕入先名キー LIKE ?) ORDER BY 仕入先ID",
    u"SELECT 仕入先ID, 仕入先名1, 仕入先名2, 住所1, TEL1, 消費税区分, 仕入先名キー FROM 仕入先 "
    "WHERE 仕入先ID = ?",
    u"仕入先ID",
};

const CounterpartSearch payeeSearch{
    Party::Supplier,
    u"SELECT 仕入先ID, 仕入先名1, 仕入先名2, 住所1, TEL1, 消費税区分, コード, 仕入先名キー FROM 仕入先 "
    "WHERE (仕入先名キー LIKE ?)  ORDER BY 仕入先ID",
    u"SELECT 仕入先ID, 仕入先名1, 仕入先名2, 住所1, TEL1, 消費税区分, コード, 仕入先名キー FROM 仕入先 "
    "WHERE 仕入先ID = ?",
    u"仕入先ID",
};

base::Status searchCounterparts(db::Recordset &found, const CounterpartSearch &search, const QString &text)
{
    // Search keys hold no full-width blanks, names as typed often do: 山田　太郎.
    const QString pattern = u'%' + text::withoutFullWidthBlanks(text) + u'%';
    return found.open(QString::fromUtf16(search.byKey), {pattern}, QString::fromUtf16(search.keyColumn));
}

base::Status openCounterpart(db::Recordset &found, const CounterpartSearch &search, qint64 id)
{
    return found.open(QString::fromUtf16(search.byId), {id}, QString::fromUtf16(search.keyColumn));
}

} // namespace book

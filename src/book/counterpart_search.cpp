#include "book/counterpart_search.h"

#include "book/tax.h"
#include "db/condition.h"
#include "db/connection.h"

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
};

const CounterpartSearch supplierSearch{
    Party::Supplier,
    u"仕入先ID, 仕入先名1, 仕入先名2, 住所1, TEL1, 消費税区分, 仕入先名キー",
};

const CounterpartSearch payeeSearch{
    Party::Supplier,
    u"仕入先ID, 仕入先名1, 仕入先名2, 住所1, TEL1, 消費税区分, コード, 仕入先名キー",
};

QString tableOf(Party party) { return party == Party::Customer ? u"納品先"_s : u"仕入先"_s; }

base::Status searchCounterparts(db::Recordset &found, const CounterpartSearch &search, const QString &typed)
{
    const db::Condition holds =
        db::keyHolds(search.party == Party::Customer ? u"納品先名キー"_s : u"仕入先名キー"_s, typed);
    const QString beside = QString::fromUtf16(search.condition);
    return found.open({.columns = QString::fromUtf16(search.columns),
                       .table = tableOf(search.party),
                       .where = beside.isEmpty() ? holds.sql : holds.sql + u" AND "_s + beside,
                       .order = orderOf(search.party),
                       .values = holds.values});
}

base::Status openCounterpart(db::Recordset &found, const CounterpartSearch &search, qint64 id)
{
    db::Query query{.columns = QString::fromUtf16(search.columns), .table = tableOf(search.party)};
    query.where = query.key() + u" = ?"_s;
    query.values = {id};
    return found.open(query);
}

base::Result<std::optional<TaxClass>> taxClassOf(db::Connection &connection, Party party, qint64 id)
{
    const auto found =
        connection.select(party == Party::Customer ? u"SELECT 消費税区分 FROM 納品先 WHERE 納品先ID = ?"_s
                                                   : u"SELECT 消費税区分 FROM 仕入先 WHERE 仕入先ID = ?"_s,
                          {id});
    if (!found)
        return found.error();
    return found->isEmpty() ? std::nullopt
                            : std::optional(taxClassFrom(found->rows.front().front().toString()));
}

} // namespace book

#include "registers/supplier.h"

#include "book/slip_counts.h"
#include "db/connection.h"
#include "db/recordset.h"
#include "registers/counterpart.h"

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

QString keyOf(const db::Recordset &supplier)
{
    return supplierKey(supplier.text(u"仕入先名1"_s), supplier.text(u"仕入先名2"_s),
                       supplier.text(u"コード"_s), supplier.text(u"TEL1"_s));
}

} // namespace

QString supplierKey(const QString &name1, const QString &name2, const QString &code, const QString &tel1)
{
    return counterpartKey(name1, name2, {code, tel1});
}

base::Status openEverySupplier(db::Recordset &suppliers) { return suppliers.open({.table = u"仕入先"_s}); }

base::Status openSupplier(db::Recordset &suppliers, qint64 id)
{
    return suppliers.open({.table = u"仕入先"_s, .where = u"(仕入先ID = ?)"_s, .values = {id}});
}

base::Result<qint64> addSupplier(db::Connection &connection, db::Recordset &suppliers)
{
    return suppliers.add({{u"消費税区分"_s, 0}}, [&connection](qint64 next) {
        return book::keyWithoutSlips(connection, book::Party::Supplier, next);
    });
}

base::Status saveSupplier(db::Recordset &suppliers)
{
    return saveCounterpart(suppliers, u"仕入先名キー"_s, keyOf);
}

base::Result<bool> supplierCodeExists(db::Connection &connection, const db::Recordset &suppliers)
{
    const QString code = suppliers.text(u"コード"_s);
    if (code.isEmpty())
        return false;
    const auto keys = connection.integers(u"SELECT * FROM 仕入先 WHERE コード = ?"_s, {code});
    if (!keys)
        return keys.error();
    return !keys->empty();
}

} // namespace registers

#include "app/main_window/shop_facts.h"

#include "db/connection.h"

using namespace Qt::StringLiterals;

namespace app
{

base::Result<SupplierNames> supplierNames(db::Connection &connection, qint64 id)
{
    const auto rows = connection.select(
        u"SELECT 仕入先ID, 仕入先名1, 仕入先名2, 住所1, TEL1, 消費税区分, 仕入先名キー, コード "
        "FROM 仕入先 WHERE (仕入先ID = ?)"_s,
        {id});
    if (!rows)
        return rows.error();
    return SupplierNames{rows->value(0, u"仕入先名1"_s).toString(),
                         rows->value(0, u"仕入先名2"_s).toString()};
}

} // namespace app

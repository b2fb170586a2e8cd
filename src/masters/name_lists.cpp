#include "masters/name_lists.h"

#include "db/connection.h"
#include "db/long_value.h"
#include "masters/list_queries.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{

base::Result<std::vector<Entry>> entries(db::Connection &connection, const db::Query &list,
                                         const QString &key, const QString &name)
{
    const auto rows = connection.select(list.statement());
    if (!rows)
        return rows.error();
    std::vector<Entry> found;
    for (int row = 0; row < rows->count(); ++row) {
        QVariantList shown{rows->value(row, name)};
        db::shorten(shown);
        found.push_back({rows->value(row, key).toLongLong(), shown.front().toString()});
    }
    return found;
}

base::Result<QStringList> names(db::Connection &connection, const db::Query &list, const QString &name)
{
    const auto rows = connection.select(list.statement());
    if (!rows)
        return rows.error();
    QStringList found;
    for (int row = 0; row < rows->count(); ++row) {
        // A list of choices that lays out megabytes stands still, and no slip could be printed with such a
        // name.
        if (!db::isTooLong(rows->value(row, name)))
            found << rows->value(row, name).toString();
    }
    found.removeAll(QString());
    found.removeDuplicates();
    return found;
}

// Of two rows of one name the first one counts.
base::Result<std::vector<Product>> products(db::Connection &connection, const db::Query &list)
{
    const auto rows = connection.select(list.statement());
    if (!rows)
        return rows.error();
    std::vector<Product> found;
    QSet<QString> known;
    for (int row = 0; row < rows->count(); ++row) {
        const QVariant name = rows->value(row, u"商品名"_s);
        if (db::isTooLong(name) || name.toString().isEmpty() || known.contains(name.toString()))
            continue;
        known.insert(name.toString());
        found.push_back(
            {name.toString(),
             book::goodsTaxFrom(rows->value(row, u"税区分"_s)).value_or(book::GoodsTax::Standard)});
    }
    return found;
}

} // namespace

base::Result<std::vector<Entry>> employees(db::Connection &connection)
{
    return entries(connection, lists::employees(), u"社員ID"_s, u"社員名"_s);
}

base::Result<std::vector<Entry>> customerCategories(db::Connection &connection)
{
    return entries(connection, lists::customerCategories(), u"区分ID"_s, u"区分名"_s);
}

base::Result<QStringList> unitNames(db::Connection &connection)
{
    return names(connection, lists::units(), u"単位"_s);
}

base::Result<QStringList> specificationNames(db::Connection &connection)
{
    return names(connection, lists::specifications(), u"規格"_s);
}

base::Result<QStringList> shippingCategoryNames(db::Connection &connection)
{
    return names(connection, lists::shippingCategories(), u"発送区分名"_s);
}

base::Result<std::vector<Product>> salesProducts(db::Connection &connection)
{
    return products(connection, lists::salesProducts());
}

base::Result<std::vector<Product>> purchaseProducts(db::Connection &connection)
{
    return products(connection, lists::purchaseProducts());
}

} // namespace masters

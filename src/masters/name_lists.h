#pragma once

#include "base/result.h"
#include "book/tax_rates.h"

#include <QStringList>

#include <vector>

namespace db
{
class Connection;
}

// What the drop-downs of the other screens offer from the masters.
namespace masters
{

/// A row that others refer to by its key.
struct Entry
{
    qint64 id;
    QString name;
};

/// The employees (社員ID, 社員名).
base::Result<std::vector<Entry>> employees(db::Connection &connection);

/// The customer categories (区分ID, 区分名) in the order of their keys.
base::Result<std::vector<Entry>> customerCategories(db::Connection &connection);

// Names that are copied into slips: each once, in the list's order, without the empty ones.
base::Result<QStringList> unitNames(db::Connection &connection);
base::Result<QStringList> specificationNames(db::Connection &connection);
base::Result<QStringList> shippingCategoryNames(db::Connection &connection);

/// Goods, and what they are taxed as.
struct Product
{
    QString name;
    book::GoodsTax taxClass = book::GoodsTax::Standard;
};
base::Result<std::vector<Product>> salesProducts(db::Connection &connection);
base::Result<std::vector<Product>> purchaseProducts(db::Connection &connection);

} // namespace masters

#pragma once

#include "db/result.h"

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
db::Result<std::vector<Entry>> employees(db::Connection &connection);

/// The customer categories (区分ID, 区分名) in the order of their keys.
db::Result<std::vector<Entry>> customerCategories(db::Connection &connection);

// Names that are copied into slips: each once, in the list's order, without the empty ones.
db::Result<QStringList> unitNames(db::Connection &connection);
db::Result<QStringList> specificationNames(db::Connection &connection);
db::Result<QStringList> salesProductNames(db::Connection &connection);
db::Result<QStringList> purchaseProductNames(db::Connection &connection);
db::Result<QStringList> shippingCategoryNames(db::Connection &connection);

} // namespace masters

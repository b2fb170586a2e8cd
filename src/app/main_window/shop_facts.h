#pragma once

#include "base/result.h"

#include <QString>

// What the main window asks the database beside the masters' lists.
namespace db
{
class Connection;
}

namespace app
{

struct SupplierNames
{
    QString name1; // 仕入先名1
    QString name2;
};

/// Empty names when there is no such supplier.
base::Result<SupplierNames> supplierNames(db::Connection &connection, qint64 id);

} // namespace app

#pragma once

#include "db/result.h"

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
db::Result<SupplierNames> supplierNames(db::Connection &connection, qint64 id);

/// Whether there are slips whose number begins with \a letter.
db::Result<bool> hasSlips(db::Connection &connection, QChar letter);

} // namespace app

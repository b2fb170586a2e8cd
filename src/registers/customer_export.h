#pragma once

#include "db/progress.h"

namespace db
{
class Connection;
}

namespace registers
{

/// Whether all customers can be written as \a fileName; see tables::checkTarget().
db::Status checkCustomerExport(db::Connection &connection, const QString &fileName);

/// Writes all customers as \a fileName, 23 columns in the order of their keys, as they are stored at one
/// moment. Reads them in blocks; a file of that name is replaced when the new one is complete.
db::Status exportCustomers(db::Connection &connection, const QString &fileName, const db::Progress &progress);

} // namespace registers

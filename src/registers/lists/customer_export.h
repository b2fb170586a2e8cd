#pragma once

#include "base/progress.h"

#include <vector>

namespace db
{
class Connection;
}

namespace registers
{

/// Whether all customers can be written as \a fileName; see tables::checkTarget().
base::Status checkCustomerExport(db::Connection &connection, const QString &fileName);

/// Writes all customers as \a fileName, 24 columns in the order of their keys, as they are stored at one
/// moment. Reads them in blocks; a file of that name is replaced when the new one is complete.
base::Status exportCustomers(db::Connection &connection, const QString &fileName,
                             const base::Progress &progress);

/// The same of the customers \a keys (納品先ID) alone, in that order; those that are gone are left out.
base::Status checkCustomerExport(std::size_t customers, const QString &fileName);
base::Status exportCustomers(db::Connection &connection, const std::vector<qint64> &keys,
                             const QString &fileName, const base::Progress &progress);

} // namespace registers

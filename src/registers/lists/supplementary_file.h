#pragma once

#include "base/progress.h"

#include <QString>

#include <vector>

namespace db
{
class Connection;
}

// The supplementary roster: a database file of its own for some of the customers.
namespace registers
{

/// Makes the database file \a target of the customers \a ids of the open file, with their keys, and of all
/// that is needed to work with them at once: own company, employees, categories and the lists of goods, units
/// and specifications. Suppliers, slips and shipments stay behind. It is written beside \a target under a
/// temporary name, and takes its place only when it is complete; nothing is left of it otherwise.
/// \return how many customers it holds: one deleted meanwhile by another program is missing
base::Result<int> writeSupplementaryFile(db::Connection &connection, const std::vector<qint64> &ids,
                                         const QString &target,
                                         const base::Progress &progress = base::unwatched,
                                         const QString &kept = {});

} // namespace registers

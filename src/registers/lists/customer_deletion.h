#pragma once

#include "base/progress.h"

#include <QHash>

#include <vector>

namespace db
{
class Connection;
}

// What becomes of slips when their customers or suppliers are deleted; deleting many customers at once.
namespace registers
{

/// How many slips each customer has, by 納品先ID; customers without slips are left out. Shipments do not
/// count: the history holds names and addresses of its own.
base::Result<QHash<qint64, int>> slipsOfCustomers(db::Connection &connection);

/// How many slips the row \a id of \a table ("納品先" or "仕入先") would leave behind if it were deleted.
base::Result<qint64> slipsLeftBy(db::Connection &connection, const QString &table, qint64 id);

/// How much of the register goes with \a chosen of its customers.
struct Extent
{
    int chosen = 0;
    int all = 0;

    /// Too many to be typed again: a tenth of all.
    [[nodiscard]] bool isGreatPart() const { return chosen * 10 >= all; }
};
base::Result<Extent> extentOf(db::Connection &connection, std::size_t chosen);

/// What becomes of a customer that has slips. The slips stay in any case.
enum class WithSlips { Keep, Delete };

/// Deletes the customers \a ids in one transaction: all of them, except those that are to be kept for their
/// slips, of which there may be more than when they were counted, or none. \return how many were deleted
base::Result<int> deleteCustomers(db::Connection &connection, const std::vector<qint64> &ids,
                                  WithSlips withSlips, const base::Progress &progress = base::unwatched);

} // namespace registers

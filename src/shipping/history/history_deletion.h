#pragma once

#include "base/result.h"

#include <QString>

#include <optional>
#include <vector>

namespace db
{
class Connection;
}

// Deleting many shipments from the history at once.
namespace shipping
{

/// Which of them: those of a category, whose name may be empty, or all.
struct HistoryPart
{
    std::optional<QString> category; // nothing: all
};

/// A category and how many shipments the history has of it.
struct CategoryCount
{
    QString category; // empty: shipments without one
    qint64 shipments = 0;
};

/// Every category that shipments have, registered or not, in the order of their names.
base::Result<std::vector<CategoryCount>> categoriesInHistory(db::Connection &connection);

/// What goes with \a part.
struct HistoryExtent
{
    qint64 shipments = 0;
    QString first; // 受付日 of the earliest and the latest, yyyy-MM-dd; empty: none has one
    QString last;
    qint64 without = 0; // of them, whose carrier's number is not known yet: they may be on their way still

    friend bool operator==(const HistoryExtent &, const HistoryExtent &) = default;
};
base::Result<HistoryExtent> extentOf(db::Connection &connection, const HistoryPart &part);

/// Deletes \a part, if it is still \a shown: what was added or changed since then was not agreed to, and the
/// error is `changed`. \return how many
base::Result<qint64> deleteHistory(db::Connection &connection, const HistoryPart &part,
                                   const HistoryExtent &shown);

} // namespace shipping

#pragma once

#include "base/progress.h"
#include "base/report.h"
#include "base/result.h"

#include <vector>

namespace db
{
class Connection;
}

// The history as a list: on paper, and as a table for spreadsheets.
namespace shipping
{

/// More shipments than anybody prints.
inline constexpr std::size_t mostOnPaper = 20'000;

/// The shipments \a keys in their order, as they are printed; those that are gone are left out. \a remark:
/// which ones they are.
base::Result<base::Report> historyReport(db::Connection &connection, const std::vector<qint64> &keys,
                                         const QString &remark,
                                         const base::Progress &progress = base::unwatched);

/// Whether a table of so many shipments can be written as \a fileName.
base::Status checkHistoryExport(std::size_t shipments, const QString &fileName);

/// Writes the shipments \a keys in their order as \a fileName, all their fields, read a few hundred at a time
/// and all of one moment.
base::Status exportHistory(db::Connection &connection, const std::vector<qint64> &keys,
                           const QString &fileName, const base::Progress &progress);

} // namespace shipping

#pragma once

#include "base/progress.h"
#include "base/report.h"
#include "base/result.h"

#include <array>

namespace db
{
class Connection;
}

// The roster of customers: a list with the columns that the clerk wants.
namespace registers
{

inline constexpr std::size_t rosterColumns = 15;

/// The columns that can be printed, in their order on paper. Those of the three telephone and fax numbers get
/// their headings from the settings.
std::array<QString, rosterColumns> rosterColumnNames();

struct RosterOptions
{
    QString title;
    std::array<QString, 3> phoneHeadings; // of TEL1, TEL2, FAX
    std::array<bool, rosterColumns> shown{};
    bool byReading = true; // in the order of the readings; else in that of the keys
};

/// The columns ticked in \a stored, one "0" or "1" for each; the usual ones when it is no such text.
std::array<bool, rosterColumns> rosterColumnsFrom(const QString &stored);
QString storedRosterColumns(const std::array<bool, rosterColumns> &shown);

/// The customers \a keys (納品先ID). Those deleted meanwhile are left out.
base::Result<base::Report> roster(db::Connection &connection, const std::vector<qint64> &keys,
                                  const RosterOptions &options, const base::Progress &progress);

} // namespace registers

#pragma once

#include "db/connection.h"

#include <QVariant>

#include <vector>

// A backup that is put back knows nothing of what was issued after it. Those papers are out all the same:
// their rows of 発行控 go over to it.
namespace slips
{

/// The rows of 発行控, all columns of each.
using IssuedRows = std::vector<QVariantList>;

base::Result<IssuedRows> allIssuedRows(db::Connection &connection);

/// Adds those of \a rows that the database lacks, in one transaction. One whose key another document has gets
/// a new one, and who names it as 訂正元 goes along. \return how many
base::Result<int> carryOver(db::Connection &connection, const IssuedRows &rows);

} // namespace slips

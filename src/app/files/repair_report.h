#pragma once

#include <QString>

namespace db
{
struct Salvage;
}

namespace app
{

/// What became of the rows of a damaged file, and what of them was lost or is not as it was.
QString repairReport(const db::Salvage &outcome);

/// The same without the numbers of rows, for a screen that lists them; empty when there is nothing to be
/// said.
QString repairRemarks(const db::Salvage &outcome);

} // namespace app

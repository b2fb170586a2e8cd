#pragma once

#include "base/report.h"

#include <Qt>

namespace ui
{

/// Whether the order of \a report's rows carries no meaning that sorting them would take away: no row begins
/// or ends a group.
bool canBeSorted(const base::Report &report);

/// Sorts the rows of \a report by their \a column: texts as a person looks for them, numbers by their value,
/// what is empty as the least. Rows that are equal in it stay as they stand.
void sortRows(base::Report &report, int column, Qt::SortOrder direction);

} // namespace ui

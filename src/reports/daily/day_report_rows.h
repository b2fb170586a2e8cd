#pragma once

#include "base/report.h"
#include "reports/daily/day_report.h"

namespace reports
{

/// \a report as it is shown and written: a subtotal after each day, below all the sums of the rates and what
/// is to be noted. The rows of lines lead to their slips.
base::Report rowsOf(const DayReport &report);

} // namespace reports

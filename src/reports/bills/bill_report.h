#pragma once

#include "base/report.h"
#include "reports/bills/bill.h"

namespace reports
{

/// The statement of \a bill as the screen shows it; its rows lead to SlipTargets, but for what was carried.
base::Report billStatement(const Bill &bill);

} // namespace reports

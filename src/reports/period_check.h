#pragma once

#include "base/result.h"
#include "book/period.h"

namespace reports
{

/// Fails for a period that ends before it begins.
base::Status checkPeriod(const book::Period &period);

} // namespace reports

#pragma once

#include "base/progress.h"
#include "base/report.h"
#include "base/result.h"

namespace tables
{

/// Whether \a report can be written as \a fileName; see checkTarget().
base::Status checkReport(const QString &fileName, const base::Report &report);

/// Writes \a report as \a fileName, its totals as the last row; see writeTable().
base::Status writeReport(const QString &fileName, const base::Report &report, const base::Progress &progress);

} // namespace tables

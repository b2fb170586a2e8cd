#pragma once

#include "printing/sheet.h"
#include "reports/charts/chart_data.h"

namespace reports
{

/// \a data on a lying A4 page: bars with their amounts beside them, so that it says the same without
/// colours.
printing::Sheet chartSheet(const ChartData &data, const QString &date);

/// Where an axis of amounts begins and ends, and how far its marks stand apart: round amounts.
struct ChartScale
{
    double least = 0;
    double most = 0;
    double step = 0;
};

/// The scale for values from \a least to \a most; nought is always on it.
ChartScale scaleFor(double least, double most);

/// The scale that all values of \a data fit on; those that are no number are left out.
ChartScale scaleFor(const ChartData &data);

} // namespace reports

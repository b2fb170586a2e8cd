#pragma once

#include "base/progress.h"
#include "registers/postal/postal_source.h"

namespace registers
{

/// The postal service's own lists: "utf_ken_all.csv" or "KEN_ALL.CSV" (15 columns an area) and "JIGYOSYO.CSV"
/// (13 columns an office), told apart by their columns. Fails when \a fileName holds no line of either.
base::Result<PostalSource> readPostalCsv(const QString &fileName, const base::Progress &progress);

/// The town of an area line: without the notes in brackets, except a floor, which has a code of its own
/// (（１階）); blank for the lines that stand for the rest of a city ("以下に掲載がない場合").
QString townOfCsv(const QString &written, const QString &city);

} // namespace registers

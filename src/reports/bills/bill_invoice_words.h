#pragma once

#include <QStringList>

namespace reports
{

struct BillPaper;

/// Whether the bill itself is the qualified invoice of what it bills, and not the notes: that of a customer
/// taxed on the bill and, where the shop chose so, of one whose prices include the tax.
bool isInvoice(const BillPaper &paper);

/// Whether the bill tells what was sold and taxed at each rate. Not as long as it does not bear the tax that
/// is due: what is charged is what is told.
bool bearsRates(const BillPaper &paper);

/// What stands under 消費税: "1,234", "内 1,234" of prices that include it, "別途" as long as the tax of a
/// bill is not booked.
QString taxWords(const BillPaper &paper);

/// Which notes the bill is made of: "O1、O2、O5"; of many the first and the last, and how many there are.
QString noteNumberWords(const QStringList &numbers);

} // namespace reports

#pragma once

#include "book/period.h"
#include "db/condition.h"

// When bills are due: 締め日 of a customer, 1 to 30 that day of each month, 0 its last one. Other programs
// write 31 or 99 for the last day, and older files nothing.
namespace reports
{

/// The closing day that \a number stands for: 0 to 30.
int closingDayFrom(int number);

/// Upon 納品先: the customers whose bills close on \a closingDay, whichever way it is written.
db::Condition customersClosingOn(int closingDay);

/// The last period of a month that has ended by the end of \a today, where each ends on \a closingDay, or on
/// the last day of a month that does not have it.
book::Period closingPeriod(int closingDay, const QDate &today);

/// The month that ends where \a period begins.
book::Period monthBefore(const book::Period &period);

} // namespace reports

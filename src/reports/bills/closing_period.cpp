#include "reports/bills/closing_period.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr int lastClosingDay = 30;

QDate closingDate(int closingDay, const QDate &month)
{
    const int last = month.daysInMonth();
    const int day = closingDay == 0 ? last : std::min(closingDay, last);
    return {month.year(), month.month(), day};
}

} // namespace

int closingDayFrom(int number) { return number >= 1 && number <= lastClosingDay ? number : 0; }

db::Condition customersClosingOn(int closingDay)
{
    if (closingDayFrom(closingDay) != 0)
        return {u"(締め日 = ?)"_s, {closingDay}};
    return {u"(締め日 IS NULL OR 締め日 NOT BETWEEN 1 AND ?)"_s, {lastClosingDay}};
}

book::Period closingPeriod(int closingDay, const QDate &today)
{
    const int day = closingDayFrom(closingDay);
    QDate month(today.year(), today.month(), 1);
    if (closingDate(day, month) > today)
        month = month.addMonths(-1);
    return {closingDate(day, month.addMonths(-1)).addDays(1), closingDate(day, month)};
}

book::Period monthBefore(const book::Period &period)
{
    return {period.from.addMonths(-1), period.from.addDays(-1)};
}

} // namespace reports

#pragma once

#include <QVariant>

#include <limits>
#include <optional>

// What a book may hold in place of dates and numbers, when other hands have written it: it is counted where
// it can be, and told where it cannot.
namespace book
{

/// SQL: whether a slip has no 日付, or one that is no date. It belongs to the time before every period.
/// date() gives a date back as it is, and with a modifier, for which it counts the days, no 31st of February.
inline QString isUndated() { return QStringLiteral("(date(日付, '+0 days') = 日付) IS NOT TRUE"); }

/// SQL: what a line's 金額 adds to a sum, in ten-thousandths. A text, or a number beyond all amounts, gives
/// one that no ExactSum holds, so that the sum is none rather than a wrong one. It has to be signed after it
/// was summed up, lest two of these cancel out.
inline QString amountCount()
{
    return QStringLiteral("CASE WHEN 金額 BETWEEN -9e11 AND 9e11 THEN ROUND(金額 * 10000) WHEN 金額 IS NOT "
                          "NULL THEN 1e300 END");
}

/// A quantity, price or amount; nothing for NULL, and not a number for a text, so that what is counted with
/// it is none either.
inline std::optional<double> storedNumber(const QVariant &value)
{
    if (value.isNull())
        return std::nullopt;
    const int type = value.typeId();
    const bool isNumber = type == QMetaType::Double || type == QMetaType::LongLong || type == QMetaType::Int;
    return isNumber ? value.toDouble() : std::numeric_limits<double>::quiet_NaN();
}

} // namespace book

#pragma once

#include <QVariant>

#include <cmath>
#include <limits>
#include <optional>

// What a book may hold in place of numbers, when other hands have written it: it is counted where it can be,
// and told where it cannot.
namespace book
{

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

/// Whether \a one and \a other are the same number, neither of them is there, or both are none.
inline bool isSameNumber(const std::optional<double> &one, const std::optional<double> &other)
{
    return one == other || (one && other && std::isnan(*one) && std::isnan(*other));
}

/// A key; nothing for NULL.
inline std::optional<qint64> storedKey(const QVariant &value)
{
    return value.isNull() ? std::nullopt : std::optional(value.toLongLong());
}

} // namespace book

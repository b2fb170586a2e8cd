#pragma once

#include <QString>

#include <optional>

// Numbers as they are typed and shown.
namespace text
{

/// A number as a clerk types it: full-width digits, signs and points count as half-width ones, blanks
/// around it and thousands separators ("1,234", between groups of three digits only) are passed over, and so
/// are a ¥ before and a 円 after it. A minus may be ▲, △ or any dash, the long vowel ー that kana input makes
/// of it included. Nothing for anything else, for an empty text and for a number that is not finite ("1e400",
/// "inf"). An exponent is not accepted.
std::optional<double> parseNumber(QStringView s);

/// As parseNumber, for whole numbers that fit 64 bits. They are keys and counts: the marks of money, with
/// which a name may begin or end (100円), and its signs are none of theirs.
std::optional<qint64> parseInteger(QStringView s);

/// A stored setting or field as a number: what does not parse counts as 0.
double numberOrZero(QStringView s);

/// "#,##0": rounded half away from zero to whole yen, "-1,234" when negative; never "-0".
/// "計算不能" for what is not finite or has more than eighteen digits.
QString formatAmount(double value);

/// Quantities and unit prices: "#,##0" when whole, "#,##0.00" otherwise; what is none as formatAmount.
QString formatQuantity(double value);

/// A number as it is edited: shortest decimal form, no separators, no exponent ("2.5", "1000"); "計算不能"
/// where it is not finite.
QString formatPlain(double value);

} // namespace text

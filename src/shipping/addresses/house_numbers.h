#pragma once

#include <QString>

// Addresses as they are written on mail: what was typed in any width, for a column and for a line.
namespace shipping
{

/// How numbers stand in a column.
enum class Figures {
    Upright, // as digits; exactly two of them share a square, longer runs stand digit by digit
    Kanji,   // by position: 一二三 for 123
};

/// What stands between two numbers of a column.
enum class Between { Dash, No /* の */ };

/// \a typed for a column of vertical writing: everything full width but two digits that share a square.
/// Numbers beside a letter (1F, B203) stay digits. A dash, which kana input makes a ー, counts as one between
/// figures only.
QString columnAddress(const QString &typed, Figures figures, Between between);

/// \a typed for a line: half-width kana become full width, digits and letters stay.
QString lineAddress(const QString &typed);

} // namespace shipping

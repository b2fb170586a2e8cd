#pragma once

#include <QString>

#include <optional>

namespace text
{

/// "NNN-NNNN" when \a typed is a complete postal code: seven digits in full or half width, with a hyphen
/// after the third or without, behind 〒 or not.
std::optional<QString> completePostalCode(const QString &typed);

/// The code as it is printed behind 〒: complete ones with their hyphen, others as they stand.
inline QString shownPostalCode(const QString &stored) { return completePostalCode(stored).value_or(stored); }

} // namespace text

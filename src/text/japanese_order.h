#pragma once

#include <QString>

#include <string_view>

namespace text
{

/// Which of two UTF-8 texts comes first in a list that a person reads; less than, equal to or greater than 0.
///
/// Signs, numbers by their value, Latin letters, kana in the order of the fifty sounds, kanji in the order of
/// JIS X 0208. Case, width and the two kana, then voiced and small kana count only where all else is equal; 0
/// for the same bytes alone.
int compareJapanese(std::string_view one, std::string_view other);

/// The same as a comparison for sorting.
bool comesBefore(const QString &one, const QString &other);

} // namespace text

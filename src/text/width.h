#pragma once

#include <QString>

// Conversions between full and half width and between the two kana, as the clerk expects of
// the fields that force one of them.
namespace text
{

/// Full-width ASCII, blanks, punctuation and katakana (and hiragana) become half-width; a voiced kana
/// becomes two characters (ガ → ｶﾞ). Characters without a half-width form stay.
QString toHalfWidth(QStringView s);

/// Only full-width ASCII and the full-width blank become half-width; kana stay. For numbers and the like.
QString toHalfWidthAscii(QStringView s);

/// Half-width ASCII, blanks and kana become full-width; ｶﾞ becomes one character ガ.
QString toFullWidth(QStringView s);

/// ひらがな → カタカナ (full width); everything else stays.
QString toKatakana(QStringView s);

/// A reading as customer lists sort it: half-width katakana with the small kana written full size
/// (ｬ→ﾔ, ｯ→ﾂ …) and the long-vowel mark ｰ as "-", so that ｷｬｯﾁｰ becomes ｷﾔﾂﾁ-.
QString normalisedReading(QStringView s);

/// \a number with "-" for all that input methods deliver for it between digits (ー, −, ‐ and the like). For
/// telephone numbers and codes only: ー is a vowel mark elsewhere.
QString withPlainHyphens(QString number);

/// \a s without any full-width blank (U+3000), trimmed of blanks at both ends.
QString withoutFullWidthBlanks(QStringView s);

} // namespace text

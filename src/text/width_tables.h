#pragma once

#include <array>

// What width.cpp and like.cpp know alike of the two widths and the two kana. Not for other folders.
namespace text
{

inline constexpr char16_t voicedMark = u'゛';
inline constexpr char16_t semiVoicedMark = u'゜';

// U+FF61 to U+FF9F in their order there, which is the order of JIS X 0201.
inline constexpr char16_t firstHalfWidthKana = 0xFF61;
inline constexpr char16_t lastHalfWidthKana = 0xFF9F;
inline constexpr std::array<char16_t, 64> fullWidthKana =
    std::to_array(u"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノ"
                  u"ハヒフヘホマミムメモヤユヨラリルレロワン゛゜");
static_assert(fullWidthKana.size() - 2 == lastHalfWidthKana - firstHalfWidthKana);

constexpr bool isHalfWidthKana(char16_t c) { return c >= firstHalfWidthKana && c <= lastHalfWidthKana; }

/// The full-width form of a half-width kana; everything else as it is.
constexpr char16_t toFullWidthKana(char16_t c)
{
    return isHalfWidthKana(c) ? fullWidthKana[static_cast<std::size_t>(c - firstHalfWidthKana)] : c;
}

/// The half-width form of full-width ASCII and the full-width blank; everything else as it is.
/// Other systems' input methods deliver − and 〜 with the code points of mathematics and of JIS X 0213.
constexpr char16_t toHalfWidthAscii(char16_t c)
{
    if (c >= u'！' && c <= u'～')
        return static_cast<char16_t>(c - u'！' + u'!');
    switch (c) {
    case u'\u3000':
        return u' ';
    case u'￥': // has the place of the backslash in the half-width set
        return u'\\';
    case u'−':
        return u'-';
    case u'〜':
        return u'~';
    default:
        return c;
    }
}

/// The katakana of a hiragana; everything else as it is.
constexpr char16_t toKatakana(char16_t c)
{
    const bool hiragana = (c >= u'ぁ' && c <= u'ゖ') || c == u'ゝ' || c == u'ゞ';
    return hiragana ? static_cast<char16_t>(c - u'ぁ' + u'ァ') : c;
}

/// The one character that katakana \a base and \a mark make together, or 0 when they make none.
constexpr char16_t composedKana(char16_t base, char16_t mark)
{
    const auto next = [base](int steps) { return static_cast<char16_t>(base + steps); };
    const bool haRow = base >= u'ハ' && base <= u'ホ' && (base - u'ハ') % 3 == 0;
    if (mark == semiVoicedMark)
        return haRow ? next(2) : char16_t{0};
    if (mark != voicedMark)
        return 0;
    const bool kaToChi = base >= u'カ' && base <= u'チ' && (base - u'カ') % 2 == 0;
    if (haRow || kaToChi || base == u'ツ' || base == u'テ' || base == u'ト' || base == u'ヽ')
        return next(1);
    if (base == u'ウ')
        return u'ヴ';
    return base >= u'ワ' && base <= u'ヲ' ? next(u'ヷ' - u'ワ') : char16_t{0};
}

} // namespace text

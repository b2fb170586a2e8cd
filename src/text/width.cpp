#include "text/width.h"

#include "text/width_tables.h"

namespace text
{

namespace
{

// A katakana in half width: one character, or two with its mark; base 0 when it has no such form.
struct HalfWidth
{
    char16_t base = 0;
    char16_t mark = 0;
};

constexpr char16_t firstFullWidth = u'、';
constexpr char16_t lastFullWidth = u'ー';

using HalfWidthTable = std::array<HalfWidth, lastFullWidth - firstFullWidth + 1>;

constexpr HalfWidthTable makeHalfWidthTable()
{
    HalfWidthTable table{};
    const auto at = [&table](char16_t full) -> HalfWidth & {
        return table[static_cast<std::size_t>(full - firstFullWidth)];
    };
    constexpr char16_t halfVoicedMark = u'ﾞ';
    constexpr char16_t halfSemiVoicedMark = u'ﾟ';
    for (char16_t half = firstHalfWidthKana; half <= lastHalfWidthKana; ++half) {
        const char16_t full = toFullWidthKana(half);
        at(full).base = half;
        if (const char16_t voiced = composedKana(full, voicedMark))
            at(voiced) = {half, halfVoicedMark};
        if (const char16_t semiVoiced = composedKana(full, semiVoicedMark))
            at(semiVoiced) = {half, halfSemiVoicedMark};
    }
    at(u'\u3099').base = halfVoicedMark; // the combining marks
    at(u'\u309A').base = halfSemiVoicedMark;
    return table;
}

HalfWidth halfWidthOf(char16_t c)
{
    static constexpr HalfWidthTable table = makeHalfWidthTable();
    const char16_t full = toKatakana(c);
    if (full < firstFullWidth || full > lastFullWidth)
        return {};
    return table[static_cast<std::size_t>(full - firstFullWidth)];
}

char16_t toFullWidthAscii(char16_t c)
{
    if (c > u' ' && c <= u'~')
        return static_cast<char16_t>(c - u'!' + u'！');
    if (c == u' ')
        return u'\u3000';
    return c == u'¥' ? u'￥' : c;
}

template <typename Convert>
QString eachConverted(QStringView s, Convert convert)
{
    QString result = s.toString();
    for (QChar &c : result)
        c = convert(c.unicode());
    return result;
}

// ｧ to ｫ, ｬ to ｮ and ｯ are written full size in a reading, so that lists sort as a dictionary does.
char16_t readingCharacter(char16_t c)
{
    if (c >= u'ｧ' && c <= u'ｫ')
        return static_cast<char16_t>(c - u'ｧ' + u'ｱ');
    if (c >= u'ｬ' && c <= u'ｮ')
        return static_cast<char16_t>(c - u'ｬ' + u'ﾔ');
    if (c == u'ｯ')
        return u'ﾂ';
    return c == u'ｰ' ? u'-' : c;
}

} // namespace

QString toHalfWidth(QStringView s)
{
    QString result;
    result.reserve(s.size());
    for (const QChar c : s) {
        const HalfWidth half = halfWidthOf(c.unicode());
        result += half.base != 0 ? QChar(half.base) : QChar(toHalfWidthAscii(c.unicode()));
        if (half.mark != 0)
            result += QChar(half.mark);
    }
    return result;
}

QString toHalfWidthAscii(QStringView s)
{
    return eachConverted(s, [](char16_t c) { return toHalfWidthAscii(c); });
}

QString toFullWidth(QStringView s)
{
    QString result;
    result.reserve(s.size());
    for (qsizetype i = 0; i < s.size(); ++i) {
        const char16_t c = s[i].unicode();
        const char16_t mark = i + 1 < s.size() ? toFullWidthKana(s[i + 1].unicode()) : char16_t{0};
        const char16_t composed = isHalfWidthKana(c) ? composedKana(toFullWidthKana(c), mark) : char16_t{0};
        if (composed != 0)
            ++i;
        result += QChar(composed != 0 ? composed : toFullWidthKana(toFullWidthAscii(c)));
    }
    return result;
}

QString toKatakana(QStringView s)
{
    return eachConverted(s, [](char16_t c) { return toKatakana(c); });
}

QString normalisedReading(QStringView s) { return eachConverted(toHalfWidth(s), readingCharacter); }

QString withPlainHyphens(QString number)
{
    for (const QChar dash : QStringView(u"‐‑‒–—―−ーｰ－"))
        number.replace(dash, u'-');
    return number;
}

QString withoutFullWidthBlanks(QStringView s) { return s.toString().remove(u'\u3000').trimmed(); }

} // namespace text

#include "printing/vertical.h"

#include "printing/sheet.h"
#include "text/width.h"

#include <algorithm>
#include <string_view>

namespace printing
{

namespace
{

// After Unicode's UAX #50, classes R, Tr and Tu; ； excepted, which Japanese type leaves upright.
constexpr std::u32string_view turned = U"－−‐‑‒–—―…‥‧＝→←↑↓“”‘’｜￤＜＞≪≫＿￣"
                                       U"（）「」『』【】〔〕〈〉《》［］｛｝｟｠〖〗〘〙：";
constexpr std::u32string_view mirrored = U"ー〜～";
constexpr std::u32string_view commas = U"、。，．";
constexpr std::u32string_view smallKana =
    U"ぁぃぅぇぉっゃゅょゎゕゖァィゥェォッャュョヮヵヶㇰㇱㇲㇳㇴㇵㇶㇷㇸㇹㇺㇻㇼㇽㇾㇿ";

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

/// Full-width digits as half-width ones, which stand in one square side by side.
QString halfWidthDigits(QString text)
{
    for (QChar &c : text) {
        if (c >= u'０' && c <= u'９')
            c = QChar(c.unicode() - u'０' + u'0');
    }
    return text;
}

/// The length of the run of digits at \a at, of either width.
qsizetype digitRun(QStringView text, qsizetype at)
{
    qsizetype end = at;
    while (end < text.size() && (isDigit(text[end]) || (text[end] >= u'０' && text[end] <= u'９')))
        ++end;
    return end - at;
}

/// The length of the character at \a at with the marks that are drawn upon it.
qsizetype characterLength(QStringView text, qsizetype at)
{
    const auto codePointLength = [&](qsizetype i) {
        return text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate() ? 2 : 1;
    };
    qsizetype end = at + codePointLength(at);
    while (end < text.size()) {
        const qsizetype length = codePointLength(end);
        const char32_t next =
            length == 2 ? QChar::surrogateToUcs4(text[end], text[end + 1]) : text[end].unicode();
        const bool isSelector = (next >= 0xFE00 && next <= 0xFE0F) || (next >= 0xE0100 && next <= 0xE01EF);
        if (!isSelector && QChar::category(next) != QChar::Mark_NonSpacing)
            break;
        end += length;
    }
    return end - at;
}

VerticalSquare squareOf(QStringView character)
{
    const QString text = text::toFullWidth(character);
    const bool isPair = text.size() > 1 && text[0].isHighSurrogate();
    return {text, verticalForm(isPair ? QChar::surrogateToUcs4(text[0], text[1]) : text[0].unicode()), false};
}

} // namespace

VerticalForm verticalForm(char32_t character)
{
    const auto isIn = [&](std::u32string_view set) {
        return set.find(character) != std::u32string_view::npos;
    };
    if (isIn(mirrored))
        return VerticalForm::Mirrored;
    if (isIn(commas))
        return VerticalForm::Comma;
    if (isIn(smallKana))
        return VerticalForm::SmallKana;
    const bool isHalfWidthKana = character >= 0xFF61 && character <= 0xFF9F;
    const bool isLatin = character > U' ' && character < 0x2000 && character != U'×' && character != U'÷' &&
                         character != U'§' && character != U'±';
    return isIn(turned) || isLatin || isHalfWidthKana ? VerticalForm::Turned : VerticalForm::Upright;
}

std::vector<VerticalSquare> verticalSquares(const QString &text, bool pairDigits)
{
    std::vector<VerticalSquare> squares;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype digits = digitRun(text, at);
        if (pairDigits && digits == 2) {
            squares.push_back({halfWidthDigits(text.mid(at, 2)), VerticalForm::Upright, true});
            at += 2;
            continue;
        }
        for (const qsizetype end = at + std::max<qsizetype>(digits, 1); at < end;) {
            qsizetype length = characterLength(text, at);
            // ｶﾞ is one character of full width.
            const bool voiced = at + 1 < text.size() && (text[at + 1] == u'ﾞ' || text[at + 1] == u'ﾟ') &&
                                text::toFullWidth(QStringView(text).mid(at, 2)).size() == 1;
            length = voiced ? 2 : length;
            squares.push_back(squareOf(QStringView(text).mid(at, length)));
            at += length;
        }
    }
    return squares;
}

double columnLength(const QString &text, bool pairDigits, double points)
{
    return static_cast<double>(verticalSquares(text, pairDigits).size()) * millimetresFromPoints(points);
}

// Measured as the vertical forms of IPA Mincho and IPA Gothic stand.
double verticalShift(VerticalForm form)
{
    switch (form) {
    case VerticalForm::Comma:
        return 0.67;
    case VerticalForm::SmallKana:
        return 0.09;
    case VerticalForm::Upright:
    case VerticalForm::Turned:
    case VerticalForm::Mirrored:
        break;
    }
    return 0;
}

} // namespace printing

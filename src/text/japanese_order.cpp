#include "text/japanese_order.h"

#include "text/cp932.h"
#include "text/like.h"

#include <QVarLengthArray>

#include <array>
#include <memory>

namespace text
{

namespace
{

constexpr std::size_t planeSize = 0x10000;

// Where the classes of characters begin among the weights.
constexpr char16_t ofDigits = 0x1000;
constexpr char16_t ofLetters = 0x1100;
constexpr char16_t ofKana = 0x2000;
constexpr char16_t ofListedKanji = 0x3000;
constexpr char16_t ofOtherKanji = 0x6000; // not in the code page, in the order of their numbers
constexpr char16_t ofTheRest = 0xC000;

constexpr QStringView fiftySounds =
    u"ーアイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモヤユヨラリルレロワヰヱヲン";
constexpr QStringView smallKana = u"ァィゥェォッャュョヮヵヶ";
constexpr QStringView largeKana = u"アイウエオツヤユヨワカケ";

QChar plainKana(QChar c)
{
    if (const qsizetype small = smallKana.indexOf(c); small >= 0)
        return largeKana[small];
    const QString parts = QString(c).normalized(QString::NormalizationForm_D);
    return parts.front();
}

// The weight of each character of the Basic Multilingual Plane, folded as LIKE folds it.
class Weights
{
public:
    Weights()
    {
        for (std::size_t c = 0; c < planeSize; ++c)
            m_weights[c] = weightOf(static_cast<char16_t>(c));
        for (char16_t c = u'ァ'; c <= u'ヺ'; ++c)
            if (const qsizetype place = fiftySounds.indexOf(plainKana(QChar(c))); place >= 0)
                m_weights[c] = static_cast<char16_t>(ofKana + place);
        m_weights[u'ー'] = ofKana;
        listKanji();
    }

    char32_t operator()(char32_t c) const { return c < planeSize ? m_weights[c] : c; }

private:
    static char16_t weightOf(char16_t c)
    {
        if (c >= u'0' && c <= u'9')
            return static_cast<char16_t>(ofDigits + c - u'0');
        if (c >= u'一' && c <= u'\u9fff')
            return static_cast<char16_t>(ofOtherKanji + (c - u'一'));
        if (QChar(c).isLetter())
            return c < 0x600 ? static_cast<char16_t>(ofLetters + c) : ofTheRest;
        return static_cast<char16_t>(c & 0x0FFF);
    }

    // The code page has them in the order of JIS X 0208: the usual ones by their readings, then the others.
    void listKanji()
    {
        for (int lead = 0x88; lead <= 0xFC; lead = lead == 0x9F ? 0xE0 : lead + 1) {
            for (int trail = 0x40; trail <= 0xFC; ++trail) {
                const char bytes[] = {static_cast<char>(lead), static_cast<char>(trail)};
                const auto kanji = fromCp932(QByteArray::fromRawData(bytes, 2));
                const int row = (lead < 0xE0 ? lead - 0x88 : lead - 0xE0 + 24);
                if (kanji && kanji->size() == 1 && m_weights[kanji->front().unicode()] >= ofOtherKanji &&
                    m_weights[kanji->front().unicode()] < ofTheRest)
                    m_weights[kanji->front().unicode()] =
                        static_cast<char16_t>(ofListedKanji + row * 0xBD + (trail - 0x40));
            }
        }
    }

    std::array<char16_t, planeSize> m_weights{};
};

using Folded = QVarLengthArray<char32_t, 256>;

Folded foldedCharacters(std::string_view utf8)
{
    Folded text(static_cast<qsizetype>(utf8.size()));
    text.resize(static_cast<qsizetype>(foldUtf8(utf8, text.data())));
    return text;
}

// As far as whole characters go.
std::string_view beginningOf(std::string_view utf8)
{
    constexpr std::size_t enough = 15; // bytes: five kana or kanji
    if (utf8.size() <= enough)
        return utf8;
    std::size_t end = enough;
    while (end > 0 && (static_cast<unsigned char>(utf8[end]) & 0xC0) == 0x80)
        --end;
    return utf8.substr(0, end);
}

const Weights &weights()
{
    static const auto all = std::make_unique<const Weights>();
    return *all;
}

bool isDigit(char32_t c) { return c >= U'0' && c <= U'9'; }

// A number in a text, moved over.
struct Number
{
    Number(const Folded &text, qsizetype &at)
    {
        while (at < text.size() && text[at] == U'0')
            ++at;
        const qsizetype begin = at;
        while (at < text.size() && isDigit(text[at]))
            ++at;
        digits = {text.data() + begin, static_cast<std::size_t>(at - begin)};
    }
    [[nodiscard]] int compare(const Number &other) const
    {
        if (digits.size() != other.digits.size())
            return digits.size() < other.digits.size() ? -1 : 1;
        return digits.compare(other.digits);
    }

    std::u32string_view digits; // without zeros before them
};

int compareWeights(const Folded &one, const Folded &other)
{
    const Weights &weightOf = weights();
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < one.size() && j < other.size()) {
        if (isDigit(one[i]) && isDigit(other[j])) {
            const Number left(one, i);
            const Number right(other, j);
            if (const int order = left.compare(right); order != 0)
                return order;
            continue;
        }
        const char32_t left = weightOf(one[i++]);
        const char32_t right = weightOf(other[j++]);
        if (left != right)
            return left < right ? -1 : 1;
    }
    return int(i < one.size()) - int(j < other.size());
}

// Most texts of a list differ early, and need not be folded as a whole. \return 0 where the beginnings alone
// do not tell: the last character may belong to what follows it, and a number goes on.
int compareBeginnings(std::string_view one, std::string_view other)
{
    const Weights &weightOf = weights();
    const Folded left = foldedCharacters(beginningOf(one));
    const Folded right = foldedCharacters(beginningOf(other));
    const qsizetype certain = std::min(left.size(), right.size()) - 1;
    for (qsizetype i = 0; i < certain && !(isDigit(left[i]) && isDigit(right[i])); ++i) {
        const char32_t first = weightOf(left[i]);
        const char32_t second = weightOf(right[i]);
        if (first != second)
            return first < second ? -1 : 1;
    }
    return 0;
}

} // namespace

int compareJapanese(std::string_view one, std::string_view other)
{
    if (one == other)
        return 0;
    if (const int order = compareBeginnings(one, other); order != 0)
        return order;
    const Folded left = foldedCharacters(one);
    const Folded right = foldedCharacters(other);
    if (const int order = compareWeights(left, right); order != 0)
        return order;
    const std::u32string_view leftFolded(left.data(), static_cast<std::size_t>(left.size()));
    const std::u32string_view rightFolded(right.data(), static_cast<std::size_t>(right.size()));
    if (const int order = leftFolded.compare(rightFolded); order != 0)
        return order;
    return one.compare(other);
}

bool comesBefore(const QString &one, const QString &other)
{
    const QByteArray left = one.toUtf8();
    const QByteArray right = other.toUtf8();
    return compareJapanese({left.constData(), static_cast<std::size_t>(left.size())},
                           {right.constData(), static_cast<std::size_t>(right.size())}) < 0;
}

} // namespace text

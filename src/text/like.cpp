#include "text/like.h"

#include "text/kanji_forms.h"
#include "text/width_tables.h"

#include <QVarLengthArray>

#include <algorithm>

namespace text
{

namespace
{

constexpr char32_t anyOne = 0xFFFFFFFF; // "_" in a piece of a pattern
constexpr char32_t malformed = 0xFFFD;  // what a byte that is no part of a character counts as
constexpr std::size_t planeSize = 0x10000;
constexpr char32_t longYoshi = 0x20BB7; // 𠮷, the one form of a name's kanji beyond the plane that is common

char16_t foldedCharacter(char16_t c)
{
    switch (c) {
    case u'¥':
        return u'\\';
    case u'\u3099': // the combining marks
        return voicedMark;
    case u'\u309A':
        return semiVoicedMark;
    case u'—':
        return u'―';
    case u'‖':
        return u'∥';
    default:
        break;
    }
    const char16_t unit = toHalfWidthAscii(toKatakana(toFullWidthKana(c)));
    const char32_t lower = QChar::toCaseFolded(char32_t{unit});
    return lower < planeSize ? static_cast<char16_t>(lower) : unit;
}

// Of the block that other standards' doubles were given.
char16_t unified(char16_t c)
{
    const QString other = QString(QChar(c)).normalized(QString::NormalizationForm_C);
    return other.size() == 1 ? other.front().unicode() : c;
}

struct Folds
{
    Folds()
    {
        for (std::size_t c = 0; c < planeSize; ++c)
            to[c] = foldedCharacter(static_cast<char16_t>(c));
        for (char16_t c = 0xF900; c < 0xFB00; ++c)
            to[c] = unified(c);
        for (const KanjiForms &forms : kanjiForms)
            to[forms.old] = forms.common;
        for (char16_t c = 0xF900; c < 0xFB00; ++c)
            to[c] = to[to[c]];
        for (std::size_t c = 0; c < planeSize; ++c) {
            spellings[to[c]] = static_cast<std::uint8_t>(spellings[to[c]] + 1);
        }
        ++spellings[u'吉'];
    }

    std::array<char16_t, planeSize> to{};            // by character of the Basic Multilingual Plane
    std::array<std::uint8_t, planeSize> spellings{}; // how many characters fold to this one
};

const Folds &folds()
{
    static const Folds table;
    return table;
}

// Appends to the array that starts at \a begin and returns its new end; a mark joins the kana before it.
inline char32_t *append(char32_t *begin, char32_t *end, char32_t folded)
{
    if (folded - voicedMark <= semiVoicedMark - voicedMark && end != begin && end[-1] < planeSize) {
        const char16_t composed = composedKana(static_cast<char16_t>(end[-1]), static_cast<char16_t>(folded));
        if (composed != 0) {
            end[-1] = composed;
            return end;
        }
    }
    *end = folded;
    return end + 1;
}

inline bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

inline char32_t bits(char c, unsigned mask) { return static_cast<unsigned char>(c) & mask; }

// Takes one character off [at, end), which is not empty; a byte that is no part of one counts as malformed.
inline char32_t takeCharacter(const char *&at, const char *end)
{
    const char *const p = at;
    const auto lead = static_cast<unsigned char>(*p);
    if (lead < 0x80) {
        at = p + 1;
        return lead;
    }
    if ((lead & 0xF0) == 0xE0 && end - p >= 3 && isContinuation(p[1]) && isContinuation(p[2])) {
        const char32_t c = bits(p[0], 0x0F) << 12 | bits(p[1], 0x3F) << 6 | bits(p[2], 0x3F);
        if (c >= 0x800) {
            at = p + 3;
            return c;
        }
    } else if (lead >= 0xC2 && lead < 0xE0 && end - p >= 2 && isContinuation(p[1])) {
        at = p + 2;
        return bits(p[0], 0x1F) << 6 | bits(p[1], 0x3F);
    } else if ((lead & 0xF8) == 0xF0 && end - p >= 4 && isContinuation(p[1]) && isContinuation(p[2]) &&
               isContinuation(p[3])) {
        const char32_t c =
            bits(p[0], 0x07) << 18 | bits(p[1], 0x3F) << 12 | bits(p[2], 0x3F) << 6 | bits(p[3], 0x3F);
        if (c >= planeSize && c <= 0x10FFFF) {
            at = p + 4;
            return c;
        }
    }
    at = p + 1;
    return malformed;
}

inline char32_t folded(const Folds &table, char32_t c)
{
    if (c < planeSize)
        return table.to[c];
    return c == longYoshi ? U'吉' : c;
}

enum class Forms { AsOne, AsWritten }; // of a kanji

inline bool isKanji(char32_t c)
{
    return (c >= 0x3400 && c < 0xA000) || (c >= 0xF900 && c < 0xFB00) || c >= planeSize;
}

// Writes the folded text to \a out, which has room for a character a byte; returns its length.
template <Forms forms>
std::size_t fold(std::string_view utf8, char32_t *out)
{
    const Folds &table = folds();
    const char *at = utf8.data();
    const char *const end = at + utf8.size();
    char32_t *last = out;
    while (at != end) {
        const char32_t c = takeCharacter(at, end);
        last = append(out, last, forms == Forms::AsWritten && isKanji(c) ? c : folded(table, c));
    }
    return static_cast<std::size_t>(last - out);
}

template <Forms forms>
std::u16string foldedText(QStringView s)
{
    const QByteArray utf8 = s.toUtf8();
    QVarLengthArray<char32_t, 256> buffer(utf8.size());
    const std::size_t size = fold<forms>({utf8.data(), static_cast<std::size_t>(utf8.size())}, buffer.data());
    QString result;
    for (std::size_t i = 0; i < size; ++i)
        result += QChar::fromUcs4(buffer[static_cast<qsizetype>(i)]);
    return result.toStdU16String();
}

bool matchesAt(const char32_t *text, std::u32string_view piece)
{
    for (const char32_t c : piece) {
        if (c != *text && c != anyOne)
            return false;
        ++text;
    }
    return true;
}

// Where \a piece first matches within \a text from \a from on, or npos.
std::size_t findPiece(std::u32string_view text, std::size_t from, std::u32string_view piece)
{
    for (; from + piece.size() <= text.size(); ++from)
        if (matchesAt(text.data() + from, piece))
            return from;
    return std::u32string_view::npos;
}

void appendUtf8(std::string &bytes, char32_t c)
{
    bytes += QStringView(QChar::fromUcs4(c)).toUtf8().toStdString();
}

} // namespace

std::u16string folded(QStringView s) { return foldedText<Forms::AsOne>(s); }

std::u16string foldedAsWritten(QStringView s) { return foldedText<Forms::AsWritten>(s); }

std::size_t foldUtf8(std::string_view utf8, char32_t *out) { return fold<Forms::AsOne>(utf8, out); }

QString literalPattern(QString typed)
{
    for (const QChar special : {u'\\', u'%', u'_'})
        typed.replace(special, QString(u'\\') + special);
    return typed;
}

LikePattern::LikePattern(std::string_view utf8Pattern, char32_t escape)
{
    const Folds &table = folds();
    const char *at = utf8Pattern.data();
    const char *const end = at + utf8Pattern.size();
    std::u32string piece;
    while (at != end) {
        char32_t c = takeCharacter(at, end);
        // An escape character that ends the pattern stands for itself.
        const bool escaped = escape != 0 && c == escape && at != end;
        if (escaped)
            c = takeCharacter(at, end);
        m_anyTail = c == U'%' && !escaped;
        if (m_anyTail) {
            m_anyHead = m_anyHead || (piece.empty() && m_pieces.empty());
            if (!piece.empty())
                m_pieces.push_back(std::exchange(piece, {}));
        } else if (c == U'_' && !escaped) {
            piece += anyOne;
        } else {
            piece += U'\0';
            char32_t *const begin = piece.data();
            char32_t *const last = begin + piece.size() - 1;
            piece.resize(static_cast<std::size_t>(append(begin, last, folded(table, c)) - begin));
        }
    }
    if (!m_anyTail)
        m_pieces.push_back(piece);
    findRequiredBytes();
    findAscii();
}

// The longest run of characters that have one spelling only, as the kanji have. A text without its bytes
// cannot match, and looking for bytes is many times faster than folding.
void LikePattern::findRequiredBytes()
{
    const Folds &table = folds();
    const auto hasOneSpelling = [&table](char32_t c) {
        if (c >= planeSize)
            return c != anyOne;
        return c != malformed && !QChar::isSurrogate(c) && table.spellings[c] == 1;
    };
    for (const std::u32string &piece : m_pieces) {
        std::string run;
        for (const char32_t c : piece) {
            if (hasOneSpelling(c))
                appendUtf8(run, c);
            else
                run.clear();
            if (run.size() > m_required.size())
                m_required = run;
        }
    }
    const std::size_t size = m_required.size();
    const auto step = [](std::size_t bytes) {
        return static_cast<std::uint8_t>(std::min<std::size_t>(bytes, 255));
    };
    m_skip.fill(step(size));
    for (std::size_t i = 0; i + 1 < size; ++i)
        m_skip[static_cast<unsigned char>(m_required[i])] = step(size - 1 - i);
}

// "%052-%" and the like. Digits and signs have one spelling of a single byte; the others (０, −) are told by
// their first two bytes. A text either holds the very bytes of the literal, or it can match only if it holds
// such a pair.
void LikePattern::findAscii()
{
    if (!m_anyHead || !m_anyTail || m_pieces.size() != 1)
        return;
    const std::u32string &piece = m_pieces.front();
    const auto isSign = [](char32_t c) { return c > U' ' && c < U'\x7F' && !QChar::isLetter(c); };
    if (!std::all_of(piece.begin(), piece.end(), isSign))
        return;
    m_ascii.assign(piece.begin(), piece.end());
    const Folds &table = folds();
    for (std::size_t c = 0x80; c < planeSize; ++c) {
        if (piece.find(table.to[c]) == std::u32string::npos)
            continue;
        std::string spelling;
        appendUtf8(spelling, static_cast<char32_t>(c));
        m_firstBytes[static_cast<unsigned char>(spelling[0])] = true;
        m_secondBytes[static_cast<unsigned char>(spelling[1])] = true;
    }
}

bool LikePattern::mayHoldOtherSpelling(std::string_view utf8Text) const
{
    for (std::size_t i = 1; i < utf8Text.size(); ++i) {
        if (m_firstBytes[static_cast<unsigned char>(utf8Text[i - 1])] &&
            m_secondBytes[static_cast<unsigned char>(utf8Text[i])])
            return true;
    }
    return false;
}

// Horspool's search.
bool LikePattern::hasRequiredBytes(std::string_view utf8Text) const
{
    const std::size_t size = m_required.size();
    if (size == 0)
        return true;
    for (std::size_t last = size - 1; last < utf8Text.size();) {
        const char byte = utf8Text[last];
        if (byte == m_required.back() && utf8Text.substr(last + 1 - size, size) == m_required)
            return true;
        last += m_skip[static_cast<unsigned char>(byte)];
    }
    return false;
}

bool LikePattern::matches(std::string_view utf8Text) const
{
    if (m_pieces.empty()) // "%"
        return true;
    if (!hasRequiredBytes(utf8Text))
        return false;
    if (!m_ascii.empty()) {
        if (utf8Text.find(m_ascii) != std::string_view::npos)
            return true;
        if (!mayHoldOtherSpelling(utf8Text))
            return false;
    }
    QVarLengthArray<char32_t, 1024> buffer(static_cast<qsizetype>(utf8Text.size()));
    return matchesFolded({buffer.data(), fold<Forms::AsOne>(utf8Text, buffer.data())});
}

bool LikePattern::matchesFolded(std::u32string_view text) const
{
    std::size_t at = 0;
    auto piece = m_pieces.begin();
    auto lastPiece = m_pieces.end();
    if (!m_anyHead && piece != lastPiece) {
        if (text.size() < piece->size() || !matchesAt(text.data(), *piece))
            return false;
        at = piece->size();
        ++piece;
    }
    if (!m_anyTail && piece == lastPiece)
        return at == text.size();
    if (!m_anyTail) {
        --lastPiece;
        if (text.size() - at < lastPiece->size())
            return false;
        const std::size_t tail = text.size() - lastPiece->size();
        if (!matchesAt(text.data() + tail, *lastPiece))
            return false;
        text = text.substr(0, tail);
    }
    for (; piece != lastPiece; ++piece) {
        at = findPiece(text, at, *piece);
        if (at == std::u32string_view::npos)
            return false;
        at += piece->size();
    }
    return true;
}

} // namespace text

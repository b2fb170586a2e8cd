#include "text/iso_2022_jp.h"

#include "text/cp932.h"

namespace text
{

namespace
{

enum class Set { Ascii, Kanji, Kana };

constexpr char escape = '\x1b';
constexpr qsizetype escapeLength = 3; // bytes

std::optional<Set> setNamedBy(QByteArrayView sequence)
{
    if (sequence == "\x1b(B" || sequence == "\x1b(J")
        return Set::Ascii;
    if (sequence == "\x1b$B" || sequence == "\x1b$@")
        return Set::Kanji;
    if (sequence == "\x1b(I")
        return Set::Kana;
    return std::nullopt;
}

bool isGraphic(char c) { return c > ' ' && c < '\x7f'; }

// The same place of the table of 94 rows of 94 characters in the code page, which lays two rows into one.
void appendKanji(QByteArray &codePage, char row, char cell)
{
    const int r = row;
    const int c = cell;
    codePage += static_cast<char>((r - 1) / 2 + (r <= 0x5E ? 0x71 : 0xB1));
    codePage += static_cast<char>(r % 2 == 0 ? c + 0x7E : c + (c < 0x60 ? 0x1F : 0x20));
}

} // namespace

std::optional<QString> fromIso2022Jp(const QByteArray &bytes)
{
    QByteArray codePage;
    codePage.reserve(bytes.size());
    Set set = Set::Ascii;
    for (qsizetype at = 0; at < bytes.size(); ++at) {
        const char c = bytes[at];
        if (c == escape) {
            const auto named =
                setNamedBy(QByteArrayView(bytes).sliced(at).first(std::min(escapeLength, bytes.size() - at)));
            if (!named)
                return std::nullopt;
            set = *named;
            at += escapeLength - 1;
        } else if (c == '\n' || c == '\r') {
            set = Set::Ascii;
            codePage += c;
        } else if (static_cast<unsigned char>(c) >= 0x80) {
            return std::nullopt;
        } else if (set == Set::Kanji && isGraphic(c)) {
            if (at + 1 == bytes.size() || !isGraphic(bytes[at + 1]))
                return std::nullopt;
            appendKanji(codePage, c, bytes[++at]);
        } else {
            codePage += static_cast<char>(set == Set::Kana && isGraphic(c) ? c | 0x80 : c);
        }
    }
    return fromCp932(codePage);
}

} // namespace text

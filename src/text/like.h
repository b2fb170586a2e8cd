#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The LIKE of the search fields. The clerk types やまだ, ヤマダ or ﾔﾏﾀﾞ and expects the same customers, so
// upper and lower case, full and half width and the two kana are equal here, and 髙橋 is found by 高橋. It
// works on UTF-8 as the database hands it over, without allocating for each row.
namespace text
{

/// The folded form of \a s: what two texts share when LIKE treats them as equal.
std::u16string folded(QStringView s);

/// The same, but for the forms of a kanji: 髙橋 and 高橋 are two names.
std::u16string foldedAsWritten(QStringView s);

/// The same as folded() of UTF-8: writes the characters to \a out, which has room for one a byte, and returns
/// their number.
std::size_t foldUtf8(std::string_view utf8, char32_t *out);

/// \a typed as a part of a LIKE pattern with ESCAPE '\\', in which each of its characters stands for itself:
/// a clerk who types 50% means the sign.
QString literalPattern(QString typed);

/// A LIKE pattern made ready for many texts: "%" any run, "_" any one character.
/// A \a escape character other than 0 makes the character after it stand for itself.
class LikePattern
{
public:
    explicit LikePattern(std::string_view utf8Pattern, char32_t escape = 0);

    /// Whether the whole of \a utf8Text matches. Malformed UTF-8 never reads outside the text.
    [[nodiscard]] bool matches(std::string_view utf8Text) const;

private:
    void findRequiredBytes();
    void findAscii();
    bool mayHoldOtherSpelling(std::string_view utf8Text) const;
    bool hasRequiredBytes(std::string_view utf8Text) const;
    bool matchesFolded(std::u32string_view text) const;

    std::vector<std::u32string> m_pieces; // folded, between the "%"s
    bool m_anyHead = false;               // starts with "%"
    bool m_anyTail = false;               // ends with "%"
    std::string m_ascii;                  // the literal of "%literal%" when it is digits and signs
    std::array<bool, 256> m_firstBytes{}; // of the other spellings of its characters
    std::array<bool, 256> m_secondBytes{};
    std::string m_required;                 // bytes that every match contains, empty when none are known
    std::array<std::uint8_t, 256> m_skip{}; // by the byte under the end of m_required: how far to move on
};

} // namespace text

#pragma once

#include <QString>

#include <cstdint>
#include <string_view>
#include <vector>

// The LIKE of the search fields. The clerk types やまだ, ヤマダ or ﾔﾏﾀﾞ and expects the same customers, so
// upper and lower case, full and half width and the two kana are equal here. It works on UTF-8 as the
// database hands it over, without allocating for each row.
namespace text {

/// The folded form of \a s: what two texts share when LIKE treats them as equal.
std::u16string folded(QStringView s);

/// A LIKE pattern made ready for many texts: "%" any run, "_" any one character.
/// A \a escape character other than 0 makes the character after it stand for itself.
class LikePattern
{
public:
    explicit LikePattern(std::string_view utf8Pattern, char32_t escape = 0);

    /// Whether the whole of \a utf8Text matches. Malformed UTF-8 never reads outside the text.
    [[nodiscard]] bool matches(std::string_view utf8Text) const;
};

} // namespace text

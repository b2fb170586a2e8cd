#pragma once

#include <QByteArrayView>

#include <optional>

namespace masters
{

/// The smallest piece of an RTF file. The views point into the file's bytes.
struct RtfToken
{
    enum class Kind {
        GroupOpen,
        GroupClose,
        Word,    // \name with its parameter
        Symbol,  // \ and one character that is no letter: \~ \* \- …
        Bytes,   // text as it stands, or one escaped character
        HexByte, // \'xx
        Binary,  // the data after \bin
        End,
        Damaged // cut off within the token, or no RTF at all
    };
    Kind kind = Kind::End;
    QByteArrayView text;          // name, symbol, bytes or data
    std::optional<int> parameter; // of a word; numbers beyond 32 bits become the nearest one
    char byte = 0;                // of HexByte
};

/// Cuts an RTF file into tokens. Line ends between tokens carry no meaning and are left out.
class RtfTokenizer
{
public:
    explicit RtfTokenizer(QByteArrayView data)
        : m_data(data)
    {}

    RtfToken next();

    /// Whether raw bytes are CP932 text. The second byte of a character may then be \, { or }, as programs
    /// that knew no RTF escapes wrote マ and ソ.
    void setDoubleByte(bool on) { m_doubleByte = on; }

private:
    RtfToken bytes();
    RtfToken control();
    RtfToken word();
    RtfToken hexByte();
    RtfToken binary(std::optional<int> length);
    std::optional<int> number();
    bool atEnd() const { return m_at >= m_data.size(); }

    QByteArrayView m_data;
    qsizetype m_at = 0;
    bool m_doubleByte = false;
};

/// Value of a hexadecimal digit, or -1.
int hexDigit(char c);

} // namespace masters

#include "masters/rich_text/rtf_tokens.h"

#include <algorithm>
#include <limits>

namespace masters
{

namespace
{

constexpr qsizetype longestName = 32; // RTF knows no longer control word

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isLeadByte(char c)
{
    const auto u = static_cast<unsigned char>(c);
    return (u >= 0x81 && u <= 0x9F) || (u >= 0xE0 && u <= 0xFC);
}

bool isTrailByte(char c)
{
    const auto u = static_cast<unsigned char>(c);
    return u >= 0x40 && u <= 0xFC && u != 0x7F;
}

bool endsRun(char c) { return c == '{' || c == '}' || c == '\\' || c == '\r' || c == '\n'; }

} // namespace

int hexDigit(char c)
{
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

RtfToken RtfTokenizer::next()
{
    while (!atEnd() && (m_data[m_at] == '\r' || m_data[m_at] == '\n'))
        ++m_at;
    if (atEnd())
        return {RtfToken::Kind::End, {}, {}, 0};
    switch (m_data[m_at]) {
    case '{':
        ++m_at;
        return {RtfToken::Kind::GroupOpen, {}, {}, 0};
    case '}':
        ++m_at;
        return {RtfToken::Kind::GroupClose, {}, {}, 0};
    case '\\':
        ++m_at;
        return control();
    default:
        return bytes();
    }
}

RtfToken RtfTokenizer::bytes()
{
    const qsizetype start = m_at;
    while (!atEnd() && !endsRun(m_data[m_at])) {
        const bool pair = m_doubleByte && isLeadByte(m_data[m_at]) && m_at + 1 < m_data.size() &&
                          isTrailByte(m_data[m_at + 1]);
        m_at += pair ? 2 : 1;
    }
    return {RtfToken::Kind::Bytes, m_data.sliced(start, m_at - start), {}, 0};
}

RtfToken RtfTokenizer::control()
{
    if (atEnd())
        return {RtfToken::Kind::Damaged, {}, {}, 0};
    const char c = m_data[m_at];
    if (isLetter(c))
        return word();
    const QByteArrayView symbol = m_data.sliced(m_at++, 1);
    if (c == '\'')
        return hexByte();
    if (c == '{' || c == '}' || c == '\\')
        return {RtfToken::Kind::Bytes, symbol, {}, 0};
    return {RtfToken::Kind::Symbol, symbol, {}, 0};
}

RtfToken RtfTokenizer::word()
{
    const qsizetype start = m_at;
    while (!atEnd() && isLetter(m_data[m_at]))
        ++m_at;
    const QByteArrayView name = m_data.sliced(start, std::min(m_at - start, longestName));
    const std::optional<int> parameter = number();
    if (!atEnd() && m_data[m_at] == ' ') // the one blank that belongs to the word
        ++m_at;
    if (name == "bin")
        return binary(parameter);
    return {RtfToken::Kind::Word, name, parameter, 0};
}

std::optional<int> RtfTokenizer::number()
{
    const bool negative = !atEnd() && m_data[m_at] == '-';
    const qsizetype first = m_at + (negative ? 1 : 0);
    if (first >= m_data.size() || !isDigit(m_data[first]))
        return {};
    constexpr qint64 most = std::numeric_limits<int>::max();
    qint64 value = 0;
    for (m_at = first; !atEnd() && isDigit(m_data[m_at]); ++m_at)
        value = std::min(value * 10 + (m_data[m_at] - '0'), most);
    return static_cast<int>(negative ? -value : value);
}

RtfToken RtfTokenizer::hexByte()
{
    if (m_data.size() - m_at < 2)
        return {RtfToken::Kind::Damaged, {}, {}, 0};
    const int high = hexDigit(m_data[m_at]);
    const int low = hexDigit(m_data[m_at + 1]);
    if (high < 0 || low < 0)
        return {RtfToken::Kind::Damaged, {}, {}, 0};
    m_at += 2;
    return {RtfToken::Kind::HexByte, {}, {}, static_cast<char>(high * 16 + low)};
}

RtfToken RtfTokenizer::binary(std::optional<int> length)
{
    const qsizetype size = length.value_or(0);
    if (size < 0 || size > m_data.size() - m_at)
        return {RtfToken::Kind::Damaged, {}, {}, 0};
    m_at += size;
    return {RtfToken::Kind::Binary, m_data.sliced(m_at - size, size), {}, 0};
}

} // namespace masters

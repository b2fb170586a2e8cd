#include "text/cp932.h"

#include <QHash>

#include <array>
#include <vector>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <iconv.h>
#endif

namespace text
{

namespace
{

// The system's converter for one character at a time; asked once for each character of the code page.
#ifdef Q_OS_WIN

class SystemConverter
{
public:
    // 1 or 2 bytes as one number, 0 when the character has no place.
    quint16 encoded(char16_t c) const
    {
        const wchar_t wide = withPlace(c);
        std::array<char, 4> bytes{};
        BOOL replaced = FALSE;
        const int count = WideCharToMultiByte(932, WC_NO_BEST_FIT_CHARS, &wide, 1, bytes.data(),
                                              int(bytes.size()), nullptr, &replaced);
        if (replaced || count < 1 || count > 2)
            return 0;
        const auto byte = [&bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
        return static_cast<quint16>(count == 1 ? byte(0) : byte(0) << 8 | byte(1));
    }

    char16_t decoded(const char *bytes, std::size_t size) const
    {
        std::array<wchar_t, 4> wide{};
        const int count =
            MultiByteToWideChar(932, MB_ERR_INVALID_CHARS, bytes, int(size), wide.data(), int(wide.size()));
        return count == 1 ? static_cast<char16_t>(wide[0]) : char16_t{0};
    }

private:
    // Characters that other systems' input methods deliver for a place that Windows knows by another name.
    static wchar_t withPlace(char16_t c)
    {
        static const QHash<char16_t, char16_t> twins = {
            {u'〜', u'～'}, {u'−', u'－'}, {u'‖', u'∥'},  {u'—', u'―'}, {u'¢', u'￠'},
            {u'£', u'￡'},  {u'¬', u'￢'}, {u'¥', u'\\'}, {u'‾', u'~'},
        };
        return static_cast<wchar_t>(twins.value(c, c));
    }
};

#else

class SystemConverter
{
public:
    SystemConverter()
        : m_encoder(iconv_open("CP932", "UTF-16LE"))
        , m_decoder(iconv_open("UTF-16LE", "CP932"))
    {
        if (m_encoder == unavailable() || m_decoder == unavailable())
            qFatal("The system's iconv does not know CP932.");
    }
    ~SystemConverter()
    {
        iconv_close(m_encoder);
        iconv_close(m_decoder);
    }
    Q_DISABLE_COPY_MOVE(SystemConverter)

    // 1 or 2 bytes as one number, 0 when the character has no place.
    quint16 encoded(char16_t c) const
    {
        std::array<char, 2> from = {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
        std::array<char, 2> to{};
        const std::size_t count = convert(m_encoder, from.data(), from.size(), to);
        const auto byte = [&to](std::size_t i) { return static_cast<unsigned char>(to[i]); };
        if (count == 0)
            return 0;
        return static_cast<quint16>(count == 1 ? byte(0) : byte(0) << 8 | byte(1));
    }

    char16_t decoded(const char *bytes, std::size_t size) const
    {
        std::array<char, 2> from = {bytes[0], size > 1 ? bytes[1] : '\0'};
        std::array<char, 2> to{};
        const std::size_t count = convert(m_decoder, from.data(), size, to);
        const auto byte = [&to](std::size_t i) { return static_cast<unsigned char>(to[i]); };
        return static_cast<char16_t>(count == 2 ? byte(1) << 8 | byte(0) : 0);
    }

private:
    static iconv_t unavailable() { return reinterpret_cast<iconv_t>(-1); }

    // The number of bytes that came out, 0 on failure.
    static std::size_t convert(iconv_t converter, char *from, std::size_t size, std::array<char, 2> &to)
    {
        char *out = to.data();
        std::size_t room = to.size();
        iconv(converter, nullptr, nullptr, nullptr, nullptr);
        const bool failed = iconv(converter, &from, &size, &out, &room) == static_cast<std::size_t>(-1);
        return failed ? 0 : to.size() - room;
    }

    iconv_t m_encoder;
    iconv_t m_decoder;
};

#endif

constexpr bool isLeadByte(unsigned char b) { return (b >= 0x81 && b <= 0x9F) || (b >= 0xE0 && b <= 0xFC); }

// Both directions of the code page, for the Basic Multilingual Plane, which holds all of it. The texts
// measured are short and many, so a look-up beats the converter's set-up by far.
class CodePage
{
public:
    CodePage();

    // 1 or 2 bytes as one number; nothing when the character has no place.
    std::optional<quint16> encoded(char16_t c) const
    {
        if (c < 0x80)
            return c;
        return m_encoded[c] != 0 ? std::optional(m_encoded[c]) : std::nullopt;
    }

    std::optional<char16_t> decoded(quint16 code) const
    {
        if (code < 0x80)
            return code;
        return m_decoded[code] != 0 ? std::optional(m_decoded[code]) : std::nullopt;
    }

private:
    std::vector<quint16> m_encoded;  // by UTF-16 unit; 0: no place
    std::vector<char16_t> m_decoded; // by code; 0: no character
};

CodePage::CodePage()
    : m_encoded(0x10000)
    , m_decoded(0x10000)
{
    const SystemConverter converter;
    for (unsigned c = 0x80; c < 0x10000; ++c)
        if (!QChar::isSurrogate(c))
            m_encoded[c] = converter.encoded(static_cast<char16_t>(c));
    for (unsigned lead = 0x80; lead < 0x100; ++lead) {
        std::array<char, 2> bytes = {static_cast<char>(lead), '\0'};
        if (!isLeadByte(static_cast<unsigned char>(lead))) {
            m_decoded[lead] = converter.decoded(bytes.data(), 1);
            continue;
        }
        for (unsigned trail = 0x40; trail <= 0xFC; ++trail) {
            bytes[1] = static_cast<char>(trail);
            m_decoded[lead << 8 | trail] = converter.decoded(bytes.data(), 2);
        }
    }
}

const CodePage &codePage()
{
    static const CodePage page;
    return page;
}

// The length in UTF-16 units of the character that starts at \a i.
qsizetype unitsAt(QStringView s, qsizetype i)
{
    return s[i].isHighSurrogate() && i + 1 < s.size() && s[i + 1].isLowSurrogate() ? 2 : 1;
}

int bytesOf(const CodePage &page, char16_t c)
{
    const std::optional<quint16> code = page.encoded(c);
    return code && *code < 0x100 ? 1 : 2;
}

} // namespace

int cp932Bytes(QStringView s)
{
    const CodePage &page = codePage();
    int bytes = 0;
    for (qsizetype i = 0; i < s.size(); i += unitsAt(s, i))
        bytes += bytesOf(page, s[i].unicode());
    return bytes;
}

QString notInCp932(QStringView s)
{
    const CodePage &page = codePage();
    QString result;
    for (qsizetype i = 0; i < s.size(); i += unitsAt(s, i)) {
        const QStringView character = s.mid(i, unitsAt(s, i));
        if (!page.encoded(s[i].unicode()) && !result.contains(character))
            result += character;
    }
    return result;
}

std::optional<QByteArray> toCp932(QStringView s)
{
    const CodePage &page = codePage();
    QByteArray bytes;
    bytes.reserve(2 * s.size());
    for (const QChar c : s) {
        const std::optional<quint16> code = page.encoded(c.unicode());
        if (!code)
            return std::nullopt;
        if (*code > 0xFF)
            bytes += static_cast<char>(*code >> 8);
        bytes += static_cast<char>(*code & 0xFF);
    }
    return bytes;
}

std::optional<QString> fromCp932(const QByteArray &bytes)
{
    const CodePage &page = codePage();
    QString result;
    result.reserve(bytes.size());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        auto code = static_cast<quint16>(static_cast<unsigned char>(bytes[i]));
        if (isLeadByte(static_cast<unsigned char>(code))) {
            if (++i == bytes.size())
                return std::nullopt;
            code = static_cast<quint16>(code << 8 | static_cast<unsigned char>(bytes[i]));
        }
        const std::optional<char16_t> c = page.decoded(code);
        if (!c)
            return std::nullopt;
        result += QChar(*c);
    }
    return result;
}

QString leftCp932(QStringView s, int bytes)
{
    const CodePage &page = codePage();
    qsizetype end = 0;
    while (end < s.size()) {
        bytes -= bytesOf(page, s[end].unicode());
        if (bytes < 0)
            break;
        end += unitsAt(s, end);
    }
    return s.left(end).toString();
}

} // namespace text

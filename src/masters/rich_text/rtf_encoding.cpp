#include "masters/rich_text/rtf_encoding.h"

#include "text/cp932.h"

#include <QStringDecoder>

#include <algorithm>

namespace masters
{

namespace
{

constexpr int westernCodePage = 1252;
constexpr int utf8CodePage = 65001;
constexpr int westernCharset = 0;

QString decodeByName(const QByteArray &bytes, int codePage)
{
    QStringDecoder decoder(("windows-" + QByteArray::number(codePage)).constData());
    if (!decoder.isValid()) // built without the converters beyond Unicode
        return QString::fromLatin1(bytes);
    return decoder(bytes);
}

} // namespace

int codePageOf(int charset, int documentCodePage)
{
    switch (charset) {
    case 128:
        return japaneseCodePage;
    case westernCharset:
        return documentCodePage == japaneseCodePage ? japaneseCodePage : westernCodePage;
    case 129:
        return 949;
    case 134:
        return 936;
    case 136:
        return 950;
    case 161:
        return 1253;
    case 162:
        return 1254;
    case 204:
        return 1251;
    case 238:
        return 1250;
    default:
        return documentCodePage;
    }
}

QString decodeBytes(const QByteArray &bytes, int codePage)
{
    const bool ascii = std::all_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) == 0; });
    if (ascii)
        return QString::fromLatin1(bytes);
    if (codePage == utf8CodePage)
        return QString::fromUtf8(bytes);
    if (codePage != japaneseCodePage)
        return decodeByName(bytes, codePage);
    if (const auto text = text::fromCp932(bytes))
        return *text;
    return decodeByName(bytes, westernCodePage);
}

} // namespace masters

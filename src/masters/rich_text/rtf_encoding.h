#pragma once

#include <QByteArray>
#include <QString>

namespace masters
{

/// The Windows code page of Japanese text.
inline constexpr int japaneseCodePage = 932;

/// The code page of text in a font of the Windows character set \a charset (\fcharset). \a documentCodePage
/// is that of the file: it decides for fonts that name no set of their own. A font marked as Western in a
/// Japanese file counts as Japanese, since many programs mark all fonts alike.
int codePageOf(int charset, int documentCodePage);

/// The text of \a bytes in \a codePage. Bytes that have no meaning there come out as Western characters
/// or U+FFFD; nothing is ever dropped silently.
QString decodeBytes(const QByteArray &bytes, int codePage);

} // namespace masters

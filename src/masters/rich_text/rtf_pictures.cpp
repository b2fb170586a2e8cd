#include "masters/rich_text/rtf_pictures.h"

#include "masters/rich_text/rich_text_limits.h"
#include "masters/rich_text/rtf_tokens.h"

namespace masters
{

QSizeF RtfPicture::twips() const
{
    if (goalWidth <= 0 || goalHeight <= 0)
        return {};
    return {goalWidth * (scaleX / 100.0), goalHeight * (scaleY / 100.0)};
}

void RtfHexData::append(QByteArrayView digits)
{
    for (char c : digits) {
        const int digit = hexDigit(c);
        if (digit < 0)
            continue; // blanks between the digits
        if (m_high < 0) {
            m_high = digit;
        } else {
            m_bytes += static_cast<char>(m_high * 16 + digit);
            m_high = -1;
        }
    }
}

QByteArray RtfHexData::take()
{
    m_high = -1;
    return std::exchange(m_bytes, {});
}

std::optional<QTextImageFormat> RtfPictures::add(RichTextDocument &document, const RtfPicture &about,
                                                 const QByteArray &data)
{
    auto picture = m_known.constFind(data);
    if (picture == m_known.constEnd()) {
        const auto decoded = decode(about.kind, data, limits::pixels - document.pixels());
        if (!decoded) {
            ++m_leftOut;
            return {};
        }
        picture = m_known.insert(data, *decoded);
    }
    return document.addPicture(*picture, about.twips());
}

std::optional<Picture> RtfPictures::decode(RtfPicture::Kind kind, const QByteArray &data, qint64 room) const
{
    if (m_leftOut >= limits::damagedPictures)
        return {};
    switch (kind) {
    case RtfPicture::Kind::Dib:
        return decodeDib(data, room);
    case RtfPicture::Kind::Metafile:
        return decodeMetafile(data, room);
    case RtfPicture::Kind::Sniffed:
        break;
    }
    return decodePicture(data, room);
}

} // namespace masters

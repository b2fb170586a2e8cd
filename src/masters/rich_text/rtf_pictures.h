#pragma once

#include "masters/rich_text/rich_text_document.h"

#include <QHash>

namespace masters
{

/// What is told about the picture whose digits come in.
struct RtfPicture
{
    enum class Kind { Sniffed, Dib, Metafile }; // PNG and JPEG tell themselves by their bytes
    Kind kind = Kind::Sniffed;
    int goalWidth = 0; // twips
    int goalHeight = 0;
    int scaleX = 100; // percent
    int scaleY = 100;

    /// The size to be shown, empty when the file does not tell it.
    QSizeF twips() const;
};

/// Bytes written as hexadecimal digits, which may be spread over lines and tokens.
class RtfHexData
{
public:
    void append(QByteArrayView digits);
    void appendBinary(QByteArrayView bytes) { m_bytes += bytes; }
    QByteArray take();

private:
    QByteArray m_bytes;
    int m_high = -1; // first digit of a byte whose second one has not come yet
};

/// Decodes the pictures of a file: each only once, and no further ones after many damaged ones.
class RtfPictures
{
public:
    /// Takes the picture \a data into \a document; nothing when it cannot be shown.
    std::optional<QTextImageFormat> add(RichTextDocument &document, const RtfPicture &about,
                                        const QByteArray &data);

    /// How many could not be shown.
    int leftOut() const { return m_leftOut; }

private:
    std::optional<Picture> decode(RtfPicture::Kind kind, const QByteArray &data, qint64 room) const;

    QHash<QByteArray, Picture> m_known; // by its bytes in the file
    int m_leftOut = 0;
};

} // namespace masters

#include "masters/rich_text/picture_codec.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

namespace masters
{

namespace
{

// Formats are named by us, never guessed by the plugins: an SVG could name files and addresses.
QByteArray formatOfContent(const QByteArray &data)
{
    if (data.startsWith("\x89PNG\r\n\x1a\n"))
        return "png";
    if (data.startsWith("\xFF\xD8\xFF"))
        return "jpeg";
    if (data.startsWith("BM"))
        return "bmp";
    if (data.startsWith("GIF8"))
        return "gif";
    if (data.startsWith("RIFF") && data.mid(8, 4) == "WEBP")
        return "webp";
    return {};
}

bool within(QSize size, qint64 maxPixels)
{
    return size.width() > 0 && size.height() > 0 && qint64(size.width()) * size.height() <= maxPixels;
}

QImage decoded(const QByteArray &data, const QByteArray &format, qint64 maxPixels)
{
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    if (!within(reader.size(), maxPixels))
        return {};
    const QImage image = reader.read();
    return within(image.size(), maxPixels) ? image : QImage();
}

// Offset of the bitmap within the parameters of the metafile records that carry one, else 0.
qsizetype bitmapOffset(quint16 function)
{
    switch (function) {
    case 0x0F43: // StretchDIBits
        return 22;
    case 0x0B41: // DIBStretchBlt
        return 20;
    case 0x0940: // DIBBitBlt
        return 16;
    default:
        return 0;
    }
}

} // namespace

std::optional<Picture> decodePicture(const QByteArray &data, qint64 maxPixels)
{
    const QByteArray format = formatOfContent(data);
    if (format.isEmpty())
        return {};
    const QImage image = decoded(data, format, maxPixels);
    if (image.isNull())
        return {};
    if (format == "png")
        return Picture{image, data, PictureKind::Png};
    if (format == "jpeg")
        return Picture{image, data, PictureKind::Jpeg};
    return encodePicture(image, maxPixels);
}

std::optional<Picture> decodeDib(const QByteArray &data, qint64 maxPixels)
{
    return encodePicture(decoded(data, "dib", maxPixels), maxPixels);
}

std::optional<Picture> decodeMetafile(const QByteArray &data, qint64 maxPixels)
{
    constexpr qsizetype headerBytes = 18;
    constexpr qsizetype recordHeaderBytes = 6;
    qsizetype at = headerBytes;
    while (at + recordHeaderBytes <= data.size()) {
        const qint64 recordBytes = 2 * qint64(qFromLittleEndian<quint32>(data.constData() + at));
        const auto function = qFromLittleEndian<quint16>(data.constData() + at + 4);
        if (recordBytes < recordHeaderBytes || recordBytes > data.size() - at)
            return {};
        if (const qsizetype offset = bitmapOffset(function);
            offset && recordBytes > recordHeaderBytes + offset)
            return decodeDib(
                data.mid(at + recordHeaderBytes + offset, recordBytes - recordHeaderBytes - offset),
                maxPixels);
        at += recordBytes;
    }
    return {};
}

std::optional<Picture> encodePicture(const QImage &image, qint64 maxPixels)
{
    if (!within(image.size(), maxPixels))
        return {};
    Picture picture{image, {}, PictureKind::Png};
    QBuffer buffer(&picture.data);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        return {};
    return picture;
}

} // namespace masters

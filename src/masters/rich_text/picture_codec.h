#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>

namespace masters
{

enum class PictureKind { Png, Jpeg };

/// A decoded picture together with the bytes that go into the file.
struct Picture
{
    QImage image;
    QByteArray data; // PNG and JPEG as they came; anything else turned into PNG
    PictureKind kind = PictureKind::Png;
};

/// The picture in \a data, told by its first bytes: PNG, JPEG, BMP, GIF or WebP. Nothing when it is none of
/// these, damaged, or larger than \a maxPixels (looked up before anything is decoded).
std::optional<Picture> decodePicture(const QByteArray &data, qint64 maxPixels);

/// A device-independent bitmap without its file header, as RTF keeps them.
std::optional<Picture> decodeDib(const QByteArray &data, qint64 maxPixels);

/// The bitmap that a Windows metafile draws. Word processors wrap pasted bitmaps in this way; a metafile of
/// lines and text holds none, and nothing is returned.
std::optional<Picture> decodeMetafile(const QByteArray &data, qint64 maxPixels);

/// \a image as a picture to be kept; nothing when it is empty or larger than \a maxPixels.
std::optional<Picture> encodePicture(const QImage &image, qint64 maxPixels);

} // namespace masters

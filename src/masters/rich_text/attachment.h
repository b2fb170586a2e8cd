#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

namespace masters
{

/// A file kept inside the document that is no picture.
struct Attachment
{
    QString fileName; // without folders
    QByteArray data;

    bool operator==(const Attachment &) const = default;
};

/// Dots of the attachment's icon for each pixel of the screen at 96 dpi, so that it prints sharp.
inline constexpr int attachmentIconScale = 4;

/// A sheet of paper with \a fileName under it (shortened in the middle when long).
QImage attachmentIcon(const QString &fileName);

} // namespace masters

#pragma once

#include "masters/rich_text/rich_text_document.h"
#include "masters/rich_text/text_look.h"

#include <QBuffer>
#include <QTextBlock>

// What the tests of the company-name block share.
namespace samples
{

using namespace Qt::StringLiterals;

/// The document in one line a paragraph: alignment, then each run as {font size flags colour}text; pictures
/// as [widthxheight], attachments as [name].
inline QString described(const masters::RichTextDocument &document)
{
    QStringList lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const Qt::Alignment alignment = block.blockFormat().alignment();
        QString line = alignment & Qt::AlignHCenter ? u"^"_s : alignment & Qt::AlignRight ? u">"_s : u"<"_s;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            if (const auto attachment = document.attachment(format)) {
                line += u'[' + attachment->fileName + u']';
            } else if (const auto picture = document.picture(format)) {
                line += u"[%1x%2]"_s.arg(picture->image.width()).arg(picture->image.height());
            } else {
                const masters::TextLook look = masters::lookOf(format, document.defaultFont());
                line += u"{%1 %2%3%4%5%6 %7}"_s.arg(look.family)
                            .arg(look.points)
                            .arg(look.bold ? u"b"_s : u""_s, look.italic ? u"i"_s : u""_s,
                                 look.underline ? u"u"_s : u""_s, look.strikeOut ? u"s"_s : u""_s,
                                 look.colour.isValid() ? look.colour.name() : u"-"_s);
                line += it.fragment().text();
            }
        }
        lines += line;
    }
    return lines.join(u'\n');
}

inline QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return data;
}

/// A picture of one colour.
inline QImage plainImage(int width, int height, QColor colour = Qt::red)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

/// Every byte there is, twice over, with the line ends and zeros that trip text handling.
inline QByteArray allBytes()
{
    QByteArray bytes;
    for (int i = 0; i < 512; ++i)
        bytes += static_cast<char>(i);
    return bytes + "\r\n\0}{\\";
}

} // namespace samples

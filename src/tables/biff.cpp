#include "tables/biff.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tables::biff
{

namespace
{

constexpr quint16 textFormat = 49;  // "@"
constexpr quint16 dateFormat = 164; // the first number that is free for own formats
const QString sheetName = u"Sheet1"_s;

QByteArray font(bool bold)
{
    const QString name = u"ＭＳ Ｐゴシック"_s;
    const quint16 height = 11 * 20; // twips
    Bytes content;
    content.add({height, 0, 0x7FFF, quint16(bold ? 700 : 400), 0});
    content.add(quint8(0)).add(quint8(0)).add(quint8(128)).add(quint8(0)); // 128: Shift-JIS
    content.add(quint8(name.size())).add(quint8(1)).addCharacters(name, true);
    return record(Font, content);
}

QByteArray look(quint16 font, quint16 format, quint16 kind, quint8 differs)
{
    Bytes content;
    content.add({font, format, kind});
    content.add(quint8(0x20)).add(quint8(0)).add(quint8(0)).add(differs); // at the bottom of the cell
    content.add(quint32(0)).add(quint32(0)).add(quint16(0x20C0));         // no border, no fill
    return record(Xf, content);
}

// Readers expect fifteen looks of styles before the first one of cells.
QByteArray looks()
{
    const quint16 style = 0xFFF5;
    const quint16 cell = 0x0001;
    const quint8 formatDiffers = 0x04;
    const quint8 fontDiffers = 0x08;
    QByteArray all;
    for (int i = 0; i < PlainLook; ++i)
        all += look(0, 0, style, i == 0 ? 0 : 0xF4);
    all += look(0, 0, cell, 0);
    all += look(0, dateFormat, cell, formatDiffers);
    all += look(1, 0, cell, fontDiffers);
    all += look(0, textFormat, cell, formatDiffers);
    return all;
}

QByteArray boundSheet(qint64 position)
{
    Bytes content;
    content.add(quint32(position)).add(quint16(0));
    content.add(quint8(sheetName.size())).add(quint8(0)).addCharacters(sheetName, false);
    return record(BoundSheet, content);
}

} // namespace

Bytes &Bytes::addCharacters(QStringView text, bool wide)
{
    for (const QChar c : text) {
        if (wide)
            add(quint16(c.unicode()));
        else
            add(quint8(c.unicode()));
    }
    return *this;
}

bool isWide(QStringView text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() > 0xFF; });
}

QByteArray record(Record number, const Bytes &content)
{
    Bytes whole;
    whole.add({number, quint16(content.size())});
    return whole.content() + content.content();
}

QByteArray workbookHead(qint64 stringsSize)
{
    const QString format = u"yyyy/mm/dd"_s;
    Bytes formatContent;
    formatContent.add({dateFormat, quint16(format.size())}).add(quint8(0)).addCharacters(format, false);
    QByteArray head = record(Bof, beginning(0x0005));
    head += record(CodePage, Bytes().add({1200})); // UTF-16
    head += record(Window1, Bytes().add({0, 0, 0x5A00, 0x3800, 0x0038, 0, 0, 1, 600}));
    head += record(DateMode, Bytes().add({0})); // days count from 1900
    // The first four are the same at all times but for the heading's; readers know no font number 4.
    for (const bool bold : {false, true, false, false})
        head += font(bold);
    head += record(Format, formatContent);
    head += looks();
    head += record(Style, Bytes().add({0x8000, 0xFF00})); // "Normal"
    const qint64 sheetSize = boundSheet(0).size();
    const qint64 endSize = record(Eof, {}).size();
    return head + boundSheet(head.size() + sheetSize + stringsSize + endSize);
}

Bytes beginning(quint16 kind)
{
    Bytes content;
    content.add({0x0600, kind, 0x0DBB, 0x07CC}).add(quint32(0x41)).add(quint32(0x06));
    return content;
}

} // namespace tables::biff

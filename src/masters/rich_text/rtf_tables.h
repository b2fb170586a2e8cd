#pragma once

#include <QByteArray>
#include <QColor>
#include <QHash>
#include <QList>
#include <QString>

namespace masters
{

struct RtfFont
{
    QString family;
    int charset = 1; // 1: the document's own
};

/// The fonts that an RTF file declares, each under a number.
class RtfFontTable
{
public:
    /// Begins the font \a number. \return false when the table is full
    bool begin(int number, int documentCodePage);
    void setCharset(int charset) { m_fonts[m_current].charset = charset; }

    /// Text of the name as it stands in the file; a semicolon ends it.
    void addBytes(QByteArrayView bytes, int documentCodePage);
    void addText(const QString &text, int documentCodePage);
    /// The end of a group ends a name as a semicolon does.
    void endName(int documentCodePage);

    RtfFont font(int number) const { return m_fonts.value(number); }
    RtfFont current() const { return font(m_current); }

private:
    void decode(int documentCodePage);

    QHash<int, RtfFont> m_fonts;
    int m_current = 0;
    QByteArray m_pending; // of the name, not decoded yet
    QString m_name;
};

/// The colours of an RTF file by their position.
class RtfColourTable
{
public:
    using SetPart = void (QColor::*)(int);

    void set(SetPart part, int value);
    /// Each semicolon in \a bytes ends a colour. \return false when the table is full
    bool addBytes(QByteArrayView bytes);

    /// Invalid: the automatic colour.
    QColor colour(int number) const { return m_colours.value(number); }

private:
    QList<QColor> m_colours;
    QColor m_current;
};

} // namespace masters

#include "masters/rich_text/text_look.h"

#include "masters/rich_text/rich_text_limits.h"

#include <QFont>

#include <algorithm>

namespace masters
{

TextLook lookOf(const QTextCharFormat &format, const QFont &defaultFont)
{
    TextLook look;
    const QStringList families = format.fontFamilies().toStringList();
    look.family = families.value(0, defaultFont.family());
    if (format.hasProperty(QTextFormat::FontPointSize))
        look.points = format.fontPointSize();
    else if (format.hasProperty(QTextFormat::FontPixelSize))
        look.points = format.intProperty(QTextFormat::FontPixelSize) * 0.75; // 96 pixels are 72 points
    else if (defaultFont.pointSizeF() > 0)
        look.points = defaultFont.pointSizeF();
    look.bold = format.fontWeight() >= QFont::DemiBold;
    look.italic = format.fontItalic();
    look.underline = format.underlineStyle() != QTextCharFormat::NoUnderline || format.fontUnderline();
    look.strikeOut = format.fontStrikeOut();
    if (format.foreground().style() == Qt::SolidPattern)
        look.colour = format.foreground().color();
    return look;
}

QTextCharFormat formatOf(const TextLook &look)
{
    QTextCharFormat format;
    if (!look.family.isEmpty())
        format.setFontFamilies({look.family});
    format.setFontPointSize(std::clamp(look.points, limits::smallestPoints, limits::largestPoints));
    format.setFontWeight(look.bold ? QFont::Bold : QFont::Normal);
    format.setFontItalic(look.italic);
    format.setFontUnderline(look.underline);
    format.setFontStrikeOut(look.strikeOut);
    if (look.colour.isValid())
        format.setForeground(look.colour);
    return format;
}

namespace
{
bool isPlain(QChar c)
{
    const char16_t u = c.unicode();
    if (u < 0x20)
        return u == u'\t';
    const bool noncharacter = (u >= 0xFDD0 && u <= 0xFDEF) || u >= 0xFFFE;
    return !noncharacter && u != 0x7F && u != QChar::ObjectReplacementCharacter &&
           u != QChar::ParagraphSeparator;
}
} // namespace

QString plainCharacters(QStringView text)
{
    QString plain;
    plain.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            plain += c;
            plain += text[++i];
        } else if (c.isSurrogate()) {
            plain += QChar(QChar::ReplacementCharacter);
        } else if (isPlain(c)) {
            plain += c;
        }
    }
    return plain;
}

} // namespace masters

#include "masters/rich_text/rtf_tables.h"

#include "masters/rich_text/rich_text_limits.h"
#include "masters/rich_text/rtf_encoding.h"
#include "masters/rich_text/text_look.h"

#include <algorithm>

namespace masters
{

bool RtfFontTable::begin(int number, int documentCodePage)
{
    endName(documentCodePage); // old programs put no semicolon between
    m_current = number;
    m_fonts[number] = {};
    return m_fonts.size() <= limits::tableEntries;
}

void RtfFontTable::addBytes(QByteArrayView bytes, int documentCodePage)
{
    for (char c : bytes) { // no second byte of a character is a semicolon
        if (c == ';')
            endName(documentCodePage);
        else
            m_pending += c;
    }
}

void RtfFontTable::addText(const QString &text, int documentCodePage)
{
    decode(documentCodePage);
    m_name += text;
}

void RtfFontTable::endName(int documentCodePage)
{
    constexpr qsizetype longestName = 100;
    decode(documentCodePage);
    QString family = plainCharacters(std::exchange(m_name, {})).trimmed().left(longestName);
    if (family.startsWith(u'@')) // the same font for vertical lines
        family.remove(0, 1);
    if (!family.isEmpty() && m_fonts.contains(m_current))
        m_fonts[m_current].family = family;
}

void RtfFontTable::decode(int documentCodePage)
{
    if (!m_pending.isEmpty())
        m_name += decodeBytes(std::exchange(m_pending, {}), codePageOf(current().charset, documentCodePage));
}

void RtfColourTable::set(SetPart part, int value)
{
    if (!m_current.isValid())
        m_current = QColor(0, 0, 0);
    (m_current.*part)(std::clamp(value, 0, 255));
}

bool RtfColourTable::addBytes(QByteArrayView bytes)
{
    for (char c : bytes) {
        if (c == ';')
            m_colours.append(std::exchange(m_current, QColor()));
        if (m_colours.size() > limits::tableEntries)
            return false;
    }
    return true;
}

} // namespace masters

#include "masters/rich_text/rtf_builder.h"

#include "masters/rich_text/rich_text_limits.h"

#include <QTextBlock>

namespace masters
{

RtfBuilder::RtfBuilder(RichTextDocument &document)
    : m_cursor(&document)
{
    // Outside an edit block each insertion lays out its paragraph again.
    m_cursor.beginEditBlock();
}

bool RtfBuilder::addText(const QString &text, const TextLook &look)
{
    const QString plain = plainCharacters(text);
    if (plain.isEmpty())
        return true;
    beginContent();
    m_cursor.insertText(plain, formatOf(look));
    return count(plain.size());
}

bool RtfBuilder::addImage(QTextImageFormat image, const TextLook &look)
{
    beginContent();
    image.merge(formatOf(look));
    m_cursor.insertImage(image);
    return count(1);
}

bool RtfBuilder::endParagraph(Qt::Alignment alignment, const TextLook &look)
{
    beginContent();
    QTextBlockFormat paragraph;
    paragraph.setAlignment(alignment);
    m_cursor.setBlockFormat(paragraph);
    if (m_cursor.block().length() <= 1)
        m_cursor.setBlockCharFormat(formatOf(look));
    m_paragraphEnded = true;
    return count(1);
}

void RtfBuilder::finish(Qt::Alignment alignment, const TextLook &look)
{
    if (!m_paragraphEnded)
        endParagraph(alignment, look);
    m_cursor.endEditBlock();
}

bool RtfBuilder::count(qsizetype characters)
{
    m_characters += characters;
    return m_characters <= limits::characters;
}

void RtfBuilder::beginContent()
{
    if (m_paragraphEnded)
        m_cursor.insertBlock();
    m_paragraphEnded = false;
}

} // namespace masters

#pragma once

#include "masters/rich_text/rich_text_document.h"
#include "masters/rich_text/text_look.h"

#include <QTextCursor>

namespace masters
{

/// Puts together the document that an RTF file describes, in its order. A paragraph's end is the end of the
/// file's last paragraph unless more follows, as RTF has it.
class RtfBuilder
{
public:
    explicit RtfBuilder(RichTextDocument &document);

    /// \return false when the document grows beyond the permitted number of characters
    bool addText(const QString &text, const TextLook &look);

    /// \a look is what text typed after the image takes on. \return false as addText()
    bool addImage(QTextImageFormat image, const TextLook &look);

    /// Ends the current paragraph; \a look is that of its mark, which gives an empty line its height.
    /// \return false as addText()
    bool endParagraph(Qt::Alignment alignment, const TextLook &look);

    /// To be called once after the last piece.
    void finish(Qt::Alignment alignment, const TextLook &look);

private:
    bool count(qsizetype characters);
    void beginContent();

    QTextCursor m_cursor;
    qsizetype m_characters = 0;
    bool m_paragraphEnded = false;
};

} // namespace masters

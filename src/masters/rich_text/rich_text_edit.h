#pragma once

#include "masters/rich_text/rich_text_document.h"
#include "masters/rich_text/text_look.h"

#include <QTextEdit>

#include <memory>

namespace masters
{

/// The box in which the company-name block is written. Whatever is pasted or dropped is cut down to what the
/// block knows; files and addresses named in it are never opened.
class RichTextEdit : public QTextEdit
{
    Q_OBJECT

public:
    explicit RichTextEdit(QWidget *parent = nullptr);

    void setRichDocument(std::unique_ptr<RichTextDocument> document);
    RichTextDocument &richDocument() const { return *m_document; }

    /// The look of the selection's first character, or that of what is typed next.
    TextLook look() const;

    /// Shows a picture or attachment of the document in place of the selection.
    void insertEmbedded(QTextImageFormat image);

    /// The attachment next to \a cursor or in its selection's last place.
    std::optional<Attachment> attachmentAt(QTextCursor cursor) const;

signals:
    /// The user wants the attached file saved somewhere.
    void attachmentWanted(const masters::Attachment &attachment);

protected:
    QMimeData *createMimeDataFromSelection() const override;
    bool canInsertFromMimeData(const QMimeData *source) const override;
    void insertFromMimeData(const QMimeData *source) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    RichTextDocument *m_document = nullptr;
};

} // namespace masters

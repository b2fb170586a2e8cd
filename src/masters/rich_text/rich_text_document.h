#pragma once

#include "masters/rich_text/attachment.h"
#include "masters/rich_text/picture_codec.h"

#include <QTextDocument>
#include <QTextImageFormat>

#include <memory>
#include <optional>

class QTextCursor;

namespace masters
{

/// The extended company-name block. Pictures and attachments live inside the document, under names made from
/// their content; any other name shows an empty picture, so that no text ever makes the program read a file
/// or an address.
class RichTextDocument : public QTextDocument
{
    Q_OBJECT

public:
    explicit RichTextDocument(QObject *parent = nullptr);

    /// The font of text that names none.
    static QFont standardFont();

    /// Takes the picture into the document. \a twips is the size to be shown; an empty one stands for the
    /// picture's own size at 96 dpi. Returns what a cursor inserts to show it.
    QTextImageFormat addPicture(const Picture &picture, QSizeF twips = {});

    /// Takes the attachment into the document; it is shown as an icon with the file's name.
    QTextImageFormat addAttachment(const Attachment &attachment);

    /// The picture that \a format shows, or nothing when it shows an attachment or nothing of this document.
    std::optional<Picture> picture(const QTextFormat &format) const;

    /// The attachment that \a format stands for, if it does.
    std::optional<Attachment> attachment(const QTextFormat &format) const;

    /// Inserts \a source at \a cursor, which must belong to this document: its text with the formatting the
    /// block knows, its pictures and attachments if it keeps them itself. Everything else (tables, links,
    /// pictures on the disk or in the net) is left out.
    void insertDocument(QTextCursor cursor, const QTextDocument &source);

    /// What \a cursor has selected, as a document of its own.
    std::unique_ptr<RichTextDocument> part(const QTextCursor &cursor) const;

    /// Pixels of all pictures taken in so far, counted once each.
    qint64 pixels() const { return m_pixels; }

protected:
    QVariant loadResource(int type, const QUrl &name) override;

private:
    qint64 m_pixels = 0;
};

/// The displayed size in twips of a picture or attachment.
QSizeF twipsOf(const QTextImageFormat &format);

} // namespace masters

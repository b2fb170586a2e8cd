#include "masters/rich_text/rich_text_edit.h"

#include "masters/rich_text/rich_text_limits.h"
#include "masters/rich_text/rtf_reader.h"
#include "masters/rich_text/rtf_writer.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMimeData>
#include <QTextDocumentFragment>

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{

// As the desktops name it: Windows, X11 and macOS.
const QStringList &rtfMimeTypes()
{
    static const QStringList types{u"text/rtf"_s, u"application/rtf"_s,
                                   u"application/x-qt-windows-mime;value=\"Rich Text Format\""_s};
    return types;
}

std::unique_ptr<QTextDocument> richTextOf(const QMimeData &source)
{
    for (const QString &type : rtfMimeTypes()) {
        if (!source.hasFormat(type))
            continue;
        if (auto text = readRtf(source.data(type)))
            return std::move(text->document);
    }
    if (!source.hasHtml())
        return nullptr;
    // Read without a provider of resources, so that no style sheet or picture is looked for.
    auto document = std::make_unique<QTextDocument>();
    document->setDefaultFont(RichTextDocument::standardFont());
    QTextCursor(document.get()).insertFragment(QTextDocumentFragment::fromHtml(source.html()));
    const QString text = document->toPlainText().remove(QChar::ObjectReplacementCharacter);
    return text.trimmed().isEmpty() ? nullptr : std::move(document);
}

void insertLines(QTextCursor cursor, QString text, const TextLook &look)
{
    const QStringList lines = text.replace(u"\r\n"_s, u"\n"_s).split(u'\n');
    cursor.beginEditBlock();
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i > 0)
            cursor.insertBlock();
        cursor.insertText(plainCharacters(lines[i]), formatOf(look));
    }
    cursor.endEditBlock();
}

} // namespace

RichTextEdit::RichTextEdit(QWidget *parent)
    : QTextEdit(parent)
{
    setFont(RichTextDocument::standardFont()); // QTextEdit hands its font on to the document
    setTabChangesFocus(true);
    // What is written here goes onto paper.
    QPalette paper = palette();
    paper.setColor(QPalette::Base, Qt::white);
    paper.setColor(QPalette::Text, Qt::black);
    setPalette(paper);
    setRichDocument(std::make_unique<RichTextDocument>());
}

void RichTextEdit::setRichDocument(std::unique_ptr<RichTextDocument> document)
{
    RichTextDocument *old = m_document;
    m_document = document.release();
    m_document->setParent(this);
    setDocument(m_document);
    delete old;
}

TextLook RichTextEdit::look() const
{
    QTextCursor cursor = textCursor();
    if (!cursor.hasSelection())
        return lookOf(currentCharFormat(), m_document->defaultFont());
    cursor.setPosition(cursor.selectionStart() + 1); // a cursor's format is that of the character before it
    return lookOf(cursor.charFormat(), m_document->defaultFont());
}

void RichTextEdit::insertEmbedded(QTextImageFormat image)
{
    image.merge(formatOf(look()));
    textCursor().insertImage(image);
    ensureCursorVisible();
}

std::optional<Attachment> RichTextEdit::attachmentAt(QTextCursor cursor) const
{
    if (cursor.hasSelection())
        cursor.setPosition(cursor.selectionEnd());
    if (const auto before = m_document->attachment(cursor.charFormat()))
        return before;
    if (!cursor.movePosition(QTextCursor::NextCharacter))
        return {};
    return m_document->attachment(cursor.charFormat());
}

QMimeData *RichTextEdit::createMimeDataFromSelection() const
{
    const std::unique_ptr<RichTextDocument> part = m_document->part(textCursor());
    auto *copied = new QMimeData;
    copied->setText(part->toPlainText().remove(QChar::ObjectReplacementCharacter));
    if (const auto rtf = writeRtf(*part))
        for (const QString &type : rtfMimeTypes())
            copied->setData(type, *rtf);
    return copied;
}

bool RichTextEdit::canInsertFromMimeData(const QMimeData *source) const
{
    // A file dropped here comes as an address; 挿入 is the way to take it in.
    const bool isFile = source->hasUrls() && !source->hasHtml() && !source->hasImage();
    return !isFile && (source->hasText() || source->hasHtml() || source->hasImage());
}

void RichTextEdit::insertFromMimeData(const QMimeData *source)
{
    if (!canInsertFromMimeData(source))
        return;
    if (const auto rich = richTextOf(*source)) {
        m_document->insertDocument(textCursor(), *rich);
    } else if (source->hasImage()) {
        const auto image = source->imageData().value<QImage>();
        if (const auto picture = encodePicture(image, limits::pixels - m_document->pixels()))
            insertEmbedded(m_document->addPicture(*picture));
    } else {
        insertLines(textCursor(), source->text(), look());
    }
    ensureCursorVisible();
}

void RichTextEdit::contextMenuEvent(QContextMenuEvent *event)
{
    const std::unique_ptr<QMenu> menu(createStandardContextMenu(event->pos()));
    const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
    if (const auto attachment = attachmentAt(byMouse ? cursorForPosition(event->pos()) : textCursor())) {
        menu->addSeparator();
        connect(menu->addAction(u"添付ファイルを保存(&S)…"_s), &QAction::triggered, this,
                [this, attachment] { emit attachmentWanted(*attachment); });
    }
    menu->exec(event->globalPos());
}

} // namespace masters

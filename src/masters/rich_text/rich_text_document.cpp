#include "masters/rich_text/rich_text_document.h"

#include "masters/rich_text/rich_text_limits.h"
#include "masters/rich_text/text_look.h"

#include <QCryptographicHash>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocumentFragment>
#include <QUrl>

#include <algorithm>

Q_DECLARE_METATYPE(masters::Picture)
Q_DECLARE_METATYPE(masters::Attachment)

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{

constexpr double twipsPerPixel = 1440.0 / 96;

// The source of a picture lies beside the decoded image that Qt's layout asks for.
QUrl sourceUrl(const QString &name) { return QUrl(name + u"/source"_s); }

QString nameFor(QLatin1StringView kind, const QByteArray &first, const QByteArray &second = {})
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(QByteArray::number(first.size()) + ':');
    hash.addData(first);
    hash.addData(second);
    return u"kanbalore:"_s + kind + u'/' + QString::fromLatin1(hash.result().toHex());
}

QTextImageFormat imageFormat(const QString &name, QSizeF twips)
{
    QTextImageFormat format;
    format.setName(name);
    format.setWidth(std::clamp(twips.width(), 1.0, limits::pictureTwips) / twipsPerPixel);
    format.setHeight(std::clamp(twips.height(), 1.0, limits::pictureTwips) / twipsPerPixel);
    return format;
}

void insertFragment(RichTextDocument &target, QTextCursor &cursor, const QTextDocument &source,
                    const QTextFragment &fragment)
{
    const QTextCharFormat format = fragment.charFormat();
    if (!format.isImageFormat()) {
        cursor.insertText(plainCharacters(fragment.text()), formatOf(lookOf(format, source.defaultFont())));
        return;
    }
    const auto *own = qobject_cast<const RichTextDocument *>(&source);
    if (!own)
        return;
    QTextImageFormat shown;
    if (const auto picture = own->picture(format))
        shown = target.addPicture(*picture, twipsOf(format.toImageFormat()));
    else if (const auto attachment = own->attachment(format))
        shown = target.addAttachment(*attachment);
    else
        return;
    shown.merge(formatOf(lookOf(format, source.defaultFont())));
    for (int i = 0; i < fragment.length(); ++i) // equal neighbours are one fragment
        cursor.insertImage(shown);
}

} // namespace

RichTextDocument::RichTextDocument(QObject *parent)
    : QTextDocument(parent)
{
    setDefaultFont(standardFont());
}

QFont RichTextDocument::standardFont() { return QFont(u"ＭＳ 明朝"_s, 12); }

QTextImageFormat RichTextDocument::addPicture(const Picture &picture, QSizeF twips)
{
    const QString name = nameFor("picture"_L1, picture.data);
    if (!this->picture(imageFormat(name, {}))) {
        addResource(ImageResource, QUrl(name), picture.image);
        addResource(UserResource, sourceUrl(name), QVariant::fromValue(picture));
        m_pixels += qint64(picture.image.width()) * picture.image.height();
    }
    if (twips.isEmpty())
        twips = QSizeF(picture.image.size()) * twipsPerPixel;
    return imageFormat(name, twips);
}

QTextImageFormat RichTextDocument::addAttachment(const Attachment &attachment)
{
    const QString name = nameFor("attachment"_L1, attachment.fileName.toUtf8(), attachment.data);
    const QImage icon = attachmentIcon(attachment.fileName);
    addResource(ImageResource, QUrl(name), icon);
    addResource(UserResource, sourceUrl(name), QVariant::fromValue(attachment));
    QTextImageFormat format = imageFormat(name, QSizeF(icon.size()) * twipsPerPixel / attachmentIconScale);
    format.setToolTip(attachment.fileName);
    return format;
}

std::optional<Picture> RichTextDocument::picture(const QTextFormat &format) const
{
    const QVariant source = resource(UserResource, sourceUrl(format.toImageFormat().name()));
    if (!format.isImageFormat() || !source.canConvert<Picture>())
        return {};
    return source.value<Picture>();
}

std::optional<Attachment> RichTextDocument::attachment(const QTextFormat &format) const
{
    const QVariant source = resource(UserResource, sourceUrl(format.toImageFormat().name()));
    if (!format.isImageFormat() || !source.canConvert<Attachment>())
        return {};
    return source.value<Attachment>();
}

void RichTextDocument::insertDocument(QTextCursor cursor, const QTextDocument &source)
{
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    for (QTextBlock block = source.begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat paragraph;
        paragraph.setAlignment(block.blockFormat().alignment());
        if (block != source.begin())
            cursor.insertBlock(paragraph, formatOf(lookOf(block.charFormat(), source.defaultFont())));
        else if (cursor.block().length() <= 1) // an empty paragraph takes on what is put into it
            cursor.mergeBlockFormat(paragraph);
        for (auto it = block.begin(); !it.atEnd(); ++it)
            insertFragment(*this, cursor, source, it.fragment());
    }
    cursor.endEditBlock();
}

std::unique_ptr<RichTextDocument> RichTextDocument::part(const QTextCursor &cursor) const
{
    auto part = std::make_unique<RichTextDocument>();
    QTextCursor(part.get()).insertFragment(cursor.selection());
    // The fragment brings the names alone; they are made from the content and hence the same there.
    for (QTextBlock block = part->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (const auto shown = picture(it.fragment().charFormat()))
                part->addPicture(*shown);
            else if (const auto attached = attachment(it.fragment().charFormat()))
                part->addAttachment(*attached);
        }
    }
    return part;
}

// Qt's layout opens a file of the picture's name when this returns nothing; hence the empty picture.
QVariant RichTextDocument::loadResource(int type, const QUrl &)
{
    if (type != ImageResource)
        return {};
    QImage empty(1, 1, QImage::Format_ARGB32_Premultiplied);
    empty.fill(Qt::transparent);
    return empty;
}

QSizeF twipsOf(const QTextImageFormat &format)
{
    return QSizeF(format.width(), format.height()) * twipsPerPixel;
}

} // namespace masters

#include "masters/rich_text/rtf_writer.h"

#include "masters/rich_text/ole_package.h"
#include "masters/rich_text/rich_text_limits.h"
#include "masters/rich_text/text_look.h"

#include "text/cp932.h"

#include <QBuffer>
#include <QHash>
#include <QTextBlock>

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{

class Writer
{
public:
    explicit Writer(const RichTextDocument &document)
        : m_document(document)
    {}

    QByteArray write();

private:
    void paragraph(const QTextBlock &block);
    void fragment(const QTextFragment &fragment);
    void formatting(const TextLook &look);
    void text(const QString &text);
    void character(QChar c);
    void picture(const Picture &picture, QSizeF twips);
    void attachment(const Attachment &attachment, const QTextImageFormat &format);
    void hex(const QByteArray &data);
    int fontNumber(const QString &family);
    int colourNumber(const QColor &colour);
    QByteArray fontTable();
    QByteArray colourTable() const;

    const RichTextDocument &m_document;
    QByteArray m_out;
    QStringList m_fonts;
    QList<QRgb> m_colours; // number 0 is the automatic colour and not in the list
    QHash<QChar, QByteArray> m_escapes;
};

QByteArray number(double value) { return QByteArray::number(qRound64(value)); }

QByteArray alignmentWord(Qt::Alignment alignment)
{
    if (alignment & Qt::AlignHCenter)
        return "\\qc";
    if (alignment & Qt::AlignRight)
        return "\\qr";
    if (alignment & Qt::AlignJustify)
        return "\\qj";
    return "\\ql";
}

// \'xx where the code page has the character and gives the same one back, \u elsewhere.
QByteArray escapedCharacter(QChar c)
{
    const auto bytes = c.isSurrogate() ? std::nullopt : text::toCp932(QStringView(&c, 1));
    if (!bytes || text::fromCp932(*bytes) != QString(c))
        return "\\u" + QByteArray::number(static_cast<qint16>(c.unicode())) + '?';
    QByteArray escaped;
    for (char byte : *bytes)
        escaped += "\\'" + QByteArray(1, byte).toHex();
    return escaped;
}

QByteArray Writer::write()
{
    for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next())
        paragraph(block);
    const QByteArray body = std::exchange(m_out, {});
    const QByteArray fonts = fontTable();
    return "{\\rtf1\\ansi\\ansicpg932\\deff0\\deflang1041\\uc1\r\n" + fonts + "\r\n" + colourTable() +
           "\r\n" + body + "}\r\n";
}

void Writer::paragraph(const QTextBlock &block)
{
    m_out += "\\pard" + alignmentWord(block.blockFormat().alignment());
    if (block.begin().atEnd()) // an empty line has the height of its mark
        formatting(lookOf(block.charFormat(), m_document.defaultFont()));
    for (auto it = block.begin(); !it.atEnd(); ++it)
        fragment(it.fragment());
    m_out += "\\par\r\n";
}

void Writer::fragment(const QTextFragment &fragment)
{
    const QTextCharFormat format = fragment.charFormat();
    formatting(lookOf(format, m_document.defaultFont()));
    if (!format.isImageFormat()) {
        text(fragment.text());
        return;
    }
    const QTextImageFormat image = format.toImageFormat();
    const auto asPicture = m_document.picture(image);
    const auto asAttachment = m_document.attachment(image);
    for (int i = 0; i < fragment.length(); ++i) { // equal neighbours are one fragment
        if (asPicture)
            picture(*asPicture, twipsOf(image));
        else if (asAttachment)
            attachment(*asAttachment, image);
    }
}

void Writer::formatting(const TextLook &look)
{
    m_out += "\\plain\\f" + number(fontNumber(look.family)) + "\\fs" + number(look.points * 2) + "\\cf" +
             number(colourNumber(look.colour));
    if (look.bold)
        m_out += "\\b";
    if (look.italic)
        m_out += "\\i";
    if (look.underline)
        m_out += "\\ul";
    if (look.strikeOut)
        m_out += "\\strike";
    m_out += ' ';
}

void Writer::text(const QString &text)
{
    const QString plain = plainCharacters(text);
    for (QChar c : plain)
        character(c);
}

void Writer::character(QChar c)
{
    if (c == u'\\' || c == u'{' || c == u'}') {
        m_out += '\\';
        m_out += c.toLatin1();
    } else if (c == u'\t') {
        m_out += "\\tab ";
    } else if (c == QChar::LineSeparator) {
        m_out += "\\line ";
    } else if (c == QChar::Nbsp) {
        m_out += "\\~";
    } else if (c.unicode() < 0x80) {
        m_out += c.toLatin1();
    } else {
        QByteArray &escape = m_escapes[c];
        if (escape.isEmpty())
            escape = escapedCharacter(c);
        m_out += escape;
    }
}

void Writer::picture(const Picture &picture, QSizeF twips)
{
    m_out += picture.kind == PictureKind::Png ? "{\\pict\\pngblip" : "{\\pict\\jpegblip";
    m_out += "\\picw" + number(picture.image.width()) + "\\pich" + number(picture.image.height());
    m_out += "\\picwgoal" + number(twips.width()) + "\\pichgoal" + number(twips.height());
    hex(picture.data);
    m_out += '}';
}

// The icon is for other programs; this one draws its own.
void Writer::attachment(const Attachment &attachment, const QTextImageFormat &format)
{
    const QSizeF twips = twipsOf(format);
    m_out += "{\\object\\objemb\\objw" + number(twips.width()) + "\\objh" + number(twips.height());
    m_out += "{\\*\\objclass Package}{\\*\\objdata ";
    hex(encodePackage(attachment));
    m_out += "}{\\result ";
    if (const auto icon = encodePicture(attachmentIcon(attachment.fileName), limits::pixels))
        picture(*icon, twips);
    m_out += "}}";
}

void Writer::hex(const QByteArray &data)
{
    constexpr qsizetype bytesPerLine = 64;
    for (qsizetype at = 0; at < data.size(); at += bytesPerLine)
        m_out += "\r\n" + data.mid(at, bytesPerLine).toHex();
}

int Writer::fontNumber(const QString &family)
{
    if (!m_fonts.contains(family))
        m_fonts += family;
    return static_cast<int>(m_fonts.indexOf(family));
}

int Writer::colourNumber(const QColor &colour)
{
    if (!colour.isValid())
        return 0;
    if (!m_colours.contains(colour.rgb()))
        m_colours += colour.rgb();
    return static_cast<int>(m_colours.indexOf(colour.rgb())) + 1;
}

// All fonts are marked Japanese, since that decides how \'xx is read.
QByteArray Writer::fontTable()
{
    QByteArray table = "{\\fonttbl";
    const QStringList fonts = m_fonts;
    for (qsizetype i = 0; i < fonts.size(); ++i) {
        table += "{\\f" + QByteArray::number(i) + "\\fnil\\fcharset128 ";
        text(QString(fonts[i]).remove(u';'));
        table += std::exchange(m_out, {}) + ";}";
    }
    return table + '}';
}

QByteArray Writer::colourTable() const
{
    QByteArray table = "{\\colortbl;";
    for (QRgb colour : m_colours)
        table += "\\red" + QByteArray::number(qRed(colour)) + "\\green" + QByteArray::number(qGreen(colour)) +
                 "\\blue" + QByteArray::number(qBlue(colour)) + ';';
    return table + '}';
}

} // namespace

base::Result<QByteArray> writeRtf(const RichTextDocument &document)
{
    if (document.characterCount() > limits::characters)
        return base::Error{u"文書が長すぎるため、保存できません。文字を減らしてください。"_s};
    const QByteArray rtf = Writer(document).write();
    if (rtf.size() > limits::fileBytes)
        return base::Error{
            u"図や添付ファイルが大きすぎるため、保存できません。合計を１５ＭＢほどまでに減らしてください。"_s};
    return rtf;
}

} // namespace masters

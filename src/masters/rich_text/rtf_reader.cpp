#include "masters/rich_text/rtf_reader.h"

#include "masters/rich_text/ole_package.h"
#include "masters/rich_text/rich_text_limits.h"
#include "masters/rich_text/rtf_builder.h"
#include "masters/rich_text/rtf_header.h"
#include "masters/rich_text/rtf_tokens.h"
#include "masters/rich_text/rtf_words.h"

#include <QTextBlock>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{

constexpr QStringView notRtf = u"リッチテキスト形式（rtf）のファイルではないため、読み込めません。";
constexpr QStringView damaged = u"ファイルが壊れているため、読み込めません。";
constexpr QStringView tooLarge =
    u"ファイルが大きすぎるため、読み込めません。３２ＭＢまでのファイルを選んでください。";
constexpr QStringView tooDeep = u"ファイルの構造が複雑すぎるため、読み込めません。";
constexpr QStringView tooLong =
    u"文書が長すぎるため、読み込めません。２万文字までのファイルを選んでください。";

class Reader
{
public:
    explicit Reader(QByteArrayView rtf)
        : m_tokens(rtf)
        , m_document(std::make_unique<RichTextDocument>())
        , m_builder(*m_document)
    {}

    base::Result<RichText> read();

private:
    void take(const RtfToken &token);
    void openGroup();
    void closeGroup();
    void word(const RtfToken &token);
    void enter(RtfDestination destination);
    void bodyWord(const RtfWord &word, std::optional<int> parameter);
    void tableWord(const RtfWord &word, int parameter);
    void pictureWord(const RtfWord &word, int parameter);
    void symbol(char c);
    void bytes(QByteArrayView text);
    void binary(QByteArrayView data);
    void unicode(int code);
    void text(const QString &text);
    void endParagraph();

    void finishPicture();
    void finishObject();

    void decodePending();
    void flush();
    int codePage() const { return m_header.codePageIn(group()); }
    TextLook look() const { return m_header.lookOf(group().characters); }
    RtfGroup &group() { return m_groups.back(); }
    const RtfGroup &group() const { return m_groups.back(); }
    void fail(QStringView sentence);
    void require(bool ok, QStringView sentence);

    RtfTokenizer m_tokens;
    std::unique_ptr<RichTextDocument> m_document;
    RtfBuilder m_builder;
    QString m_failure;

    QList<RtfGroup> m_groups;
    bool m_starred = false; // \* has just come: a destination that may be passed over
    int m_toSkip = 0;       // characters that stand in for the last \u
    QByteArray m_pending;   // bytes not decoded yet: a character's two may come in two tokens
    QString m_text;         // decoded, not yet handed on

    RtfHeader m_header;
    RtfPicture m_picture;
    RtfPictures m_pictures;
    RtfHexData m_hex;
    std::optional<Attachment> m_attachment; // of the current object, until it is shown
};

base::Result<RichText> Reader::read()
{
    m_document->setUndoRedoEnabled(false);
    do {
        const RtfToken token = m_tokens.next();
        if (token.kind == RtfToken::Kind::End || token.kind == RtfToken::Kind::Damaged)
            fail(damaged);
        else
            take(token);
    } while (m_failure.isEmpty() && !m_groups.isEmpty());
    if (!m_failure.isEmpty())
        return base::Error{m_failure};
    m_document->setUndoRedoEnabled(true);
    m_document->setModified(false);
    return RichText{std::move(m_document), m_pictures.leftOut()};
}

void Reader::take(const RtfToken &token)
{
    switch (token.kind) {
    case RtfToken::Kind::GroupOpen:
        openGroup();
        break;
    case RtfToken::Kind::GroupClose:
        closeGroup();
        break;
    case RtfToken::Kind::Word:
        if (m_toSkip > 0)
            --m_toSkip;
        else
            word(token);
        break;
    case RtfToken::Kind::Symbol:
        if (m_toSkip > 0)
            --m_toSkip;
        else
            symbol(token.text.front());
        break;
    case RtfToken::Kind::Bytes:
        bytes(token.text);
        break;
    case RtfToken::Kind::HexByte:
        bytes(QByteArrayView(&token.byte, 1));
        break;
    case RtfToken::Kind::Binary:
        binary(token.text);
        break;
    case RtfToken::Kind::End:
    case RtfToken::Kind::Damaged:
        break;
    }
    if (!m_groups.isEmpty())
        m_tokens.setDoubleByte(codePage() == japaneseCodePage);
}

void Reader::openGroup()
{
    m_toSkip = 0;
    m_starred = false;
    if (m_groups.isEmpty()) {
        m_groups.append(RtfGroup());
        return;
    }
    flush();
    require(m_groups.size() < limits::groupDepth, tooDeep);
    RtfGroup inner = group();
    inner.opensDestination = false;
    inner.isObject = false;
    m_groups.append(inner);
}

void Reader::closeGroup()
{
    m_toSkip = 0;
    m_starred = false;
    flush();
    if (group().destination == RtfDestination::FontTable)
        m_header.fonts.endName(m_header.codePage);
    else if (group().destination == RtfDestination::Picture && group().opensDestination)
        finishPicture();
    else if (group().destination == RtfDestination::ObjectData && group().opensDestination)
        m_attachment = decodePackage(m_hex.take());
    if (group().isObject)
        finishObject();
    if (m_groups.size() == 1)
        m_builder.finish(group().alignment, look());
    m_groups.removeLast();
}

void Reader::word(const RtfToken &token)
{
    const bool starred = std::exchange(m_starred, false);
    if (group().destination == RtfDestination::Skip)
        return;
    const RtfWord word = rtfWord(token.text);
    if (word.kind == RtfWord::Kind::Unknown) {
        if (starred)
            enter(RtfDestination::Skip);
        return;
    }
    if (word.kind == RtfWord::Kind::Unicode)
        return unicode(token.parameter.value_or(0));
    if (word.kind == RtfWord::Kind::Character)
        return text(QString(QChar(word.character)));
    flush();
    switch (group().destination) {
    case RtfDestination::Body:
        bodyWord(word, token.parameter);
        break;
    case RtfDestination::FontTable:
    case RtfDestination::ColourTable:
        tableWord(word, token.parameter.value_or(0));
        break;
    case RtfDestination::Picture:
        pictureWord(word, token.parameter.value_or(0));
        break;
    case RtfDestination::ObjectData:
    case RtfDestination::Skip:
        break;
    }
}

void Reader::enter(RtfDestination destination)
{
    flush();
    if (m_groups.size() == 1) // the file's own group always is the body
        return;
    group().destination = destination;
    group().opensDestination = true;
    m_picture = {};
    m_hex.take();
}

void Reader::bodyWord(const RtfWord &word, std::optional<int> parameter)
{
    RtfGroup &state = group();
    switch (word.kind) {
    case RtfWord::Kind::Destination:
        return enter(word.destination);
    case RtfWord::Kind::Object:
        state.isObject = true;
        m_attachment.reset();
        return;
    case RtfWord::Kind::ObjectResult: // the attachment is shown by its own icon
        return m_attachment ? enter(RtfDestination::Skip) : void();
    case RtfWord::Kind::Toggle:
        state.characters.*word.toggle = parameter.value_or(1) != 0;
        return;
    case RtfWord::Kind::UnderlineOff:
        state.characters.underline = false;
        return;
    case RtfWord::Kind::Alignment:
        state.alignment = word.alignment;
        return;
    case RtfWord::Kind::ResetParagraph:
        state.alignment = Qt::AlignLeft;
        return;
    case RtfWord::Kind::ResetCharacters:
        state.characters = {};
        return;
    case RtfWord::Kind::EndOfParagraph:
        return endParagraph();
    case RtfWord::Kind::Font:
        state.characters.font = parameter.value_or(0);
        return;
    case RtfWord::Kind::FontSize:
        state.characters.halfPoints = parameter.value_or(24);
        return;
    case RtfWord::Kind::Colour:
        state.characters.colour = parameter.value_or(0);
        return;
    case RtfWord::Kind::FallbackLength:
        state.fallbackLength = std::clamp(parameter.value_or(1), 0, 64);
        return;
    case RtfWord::Kind::CodePage:
        m_header.codePage = parameter.value_or(japaneseCodePage);
        return;
    case RtfWord::Kind::DefaultFont:
        m_header.defaultFont = parameter.value_or(0);
        return;
    default:
        return; // belongs to a table or a picture
    }
}

void Reader::tableWord(const RtfWord &word, int parameter)
{
    switch (word.kind) {
    case RtfWord::Kind::Font:
        require(m_header.fonts.begin(parameter, m_header.codePage), tooLong);
        break;
    case RtfWord::Kind::FontCharset:
        m_header.fonts.setCharset(parameter);
        break;
    case RtfWord::Kind::ColourPart:
        m_header.colours.set(word.setPart, parameter);
        break;
    case RtfWord::Kind::Destination:
        enter(RtfDestination::Skip);
        break;
    default:
        break;
    }
}

void Reader::pictureWord(const RtfWord &word, int parameter)
{
    if (word.kind == RtfWord::Kind::PictureKind)
        m_picture.kind = word.pictureKind;
    else if (word.kind == RtfWord::Kind::PictureSize)
        m_picture.*word.pictureSize = parameter;
    else if (word.kind == RtfWord::Kind::Destination && !group().opensDestination)
        enter(RtfDestination::Skip);
}

void Reader::symbol(char c)
{
    m_starred = c == '*';
    switch (c) {
    case '~':
        return text(QString(QChar(QChar::Nbsp)));
    case '_':
        return text(QString(QChar(u'\u2011')));
    case '\t':
        return text(QString(QChar(u'\t')));
    case '\r':
    case '\n':
        if (group().destination == RtfDestination::Body) {
            flush();
            endParagraph();
        }
        return;
    default:
        return; // \* and marks that show nothing
    }
}

void Reader::bytes(QByteArrayView text)
{
    const qsizetype skipped = std::min<qsizetype>(m_toSkip, text.size());
    m_toSkip -= static_cast<int>(skipped);
    text = text.sliced(skipped);
    if (m_groups.isEmpty())
        return fail(notRtf);
    switch (group().destination) {
    case RtfDestination::Body:
        m_pending += text;
        break;
    case RtfDestination::FontTable:
        m_header.fonts.addBytes(text, m_header.codePage);
        break;
    case RtfDestination::ColourTable:
        require(m_header.colours.addBytes(text), tooLong);
        break;
    case RtfDestination::Picture:
    case RtfDestination::ObjectData:
        m_hex.append(text);
        break;
    case RtfDestination::Skip:
        break;
    }
}

void Reader::binary(QByteArrayView data)
{
    if (m_toSkip > 0)
        --m_toSkip;
    else if (group().destination == RtfDestination::Picture ||
             group().destination == RtfDestination::ObjectData)
        m_hex.appendBinary(data);
}

void Reader::unicode(int code)
{
    // Codes above 32767 are written as negative ones, those beyond 16 bits as two surrogates or, by some,
    // whole.
    const char32_t whole = code > 0xFFFF && code <= 0x10FFFF ? static_cast<char32_t>(code) : 0;
    text(whole ? QString::fromUcs4(&whole, 1) : QString(QChar(static_cast<char16_t>(code))));
    m_toSkip = group().fallbackLength;
}

void Reader::text(const QString &text)
{
    if (group().destination == RtfDestination::FontTable) {
        m_header.fonts.addText(text, m_header.codePage);
    } else if (group().destination == RtfDestination::Body) {
        decodePending();
        m_text += text;
    }
}

void Reader::endParagraph() { require(m_builder.endParagraph(group().alignment, look()), tooLong); }

void Reader::finishPicture()
{
    if (const auto image = m_pictures.add(*m_document, m_picture, m_hex.take()))
        require(m_builder.addImage(*image, look()), tooLong);
}

void Reader::finishObject()
{
    if (const auto attachment = std::exchange(m_attachment, {}))
        require(m_builder.addImage(m_document->addAttachment(*attachment), look()), tooLong);
}

void Reader::decodePending()
{
    if (!m_pending.isEmpty())
        m_text += decodeBytes(std::exchange(m_pending, {}), codePage());
}

void Reader::flush()
{
    decodePending();
    if (group().destination != RtfDestination::Body || m_text.isEmpty())
        return;
    const QString text = std::exchange(m_text, {});
    if (!group().characters.hidden)
        require(m_builder.addText(text, look()), tooLong);
}

void Reader::fail(QStringView sentence)
{
    if (m_failure.isEmpty())
        m_failure = sentence.toString();
}

void Reader::require(bool ok, QStringView sentence)
{
    if (!ok)
        fail(sentence);
}

} // namespace

base::Result<RichText> readRtf(QByteArrayView rtf)
{
    if (rtf.size() > limits::fileBytes)
        return base::Error{tooLarge.toString()};
    if (!rtf.startsWith("{\\rtf"))
        return base::Error{notRtf.toString()};
    return Reader(rtf).read();
}

} // namespace masters

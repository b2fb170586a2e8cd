#include "tables/text_file.h"

#include "text/cp932.h"
#include "text/iso_2022_jp.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace tables
{

namespace
{

std::optional<QString> decodedAs(QStringDecoder::Encoding encoding, QByteArrayView content)
{
    QStringDecoder decoder(encoding, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(content);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

base::Error unknownText()
{
    return {u"文字コードが UTF-8 でもシフト JIS でもないため、読み込めませんでした。"
            "保存し直してから、もう一度お試しください。"_s};
}

base::Result<QString> textOr(const std::optional<QString> &text)
{
    return text ? base::Result<QString>(*text) : unknownText();
}

const struct
{
    QByteArrayView mark;
    QStringDecoder::Encoding encoding;
} marks[] = {
    {"\xff\xfe", QStringDecoder::Utf16LE},
    {"\xfe\xff", QStringDecoder::Utf16BE},
    {"\xef\xbb\xbf", QStringDecoder::Utf8},
};

base::Error notReadable(const QFile &file)
{
    return {
        u"ファイル「%1」を読み取れませんでした。(%2)"_s.arg(QFileInfo(file).fileName(), file.errorString())};
}

base::Status openText(QFile &file, qint64 highestSize)
{
    const QFileInfo info(file);
    // Opening a pipe would wait for its writer, a device has no end.
    if (!info.isFile())
        return base::Error{u"ファイル「%1」が見つかりません。"_s.arg(info.fileName())};
    if (!file.open(QIODevice::ReadOnly))
        return notReadable(file);
    if (file.size() > highestSize)
        return base::Error{u"ファイル「%1」が大きすぎるため（%2 MB まで）、読み込みませんでした。"_s.arg(
            info.fileName(), QString::number(highestSize / (1024 * 1024)))};
    return {};
}

constexpr qint64 bytesAtOnce = 1 << 20;

// Text of seven bits is UTF-8 as well; what the escape sequences stand for shows by them alone.
bool hasEscapes(const QString &text)
{
    return text.contains(u"\x1b$"_s) || text.contains(u"\x1b(I"_s) || text.endsWith(u'\x1b');
}

} // namespace

base::Result<QString> decodeText(const QByteArray &content)
{
    for (const auto &[mark, encoding] : marks) {
        if (content.startsWith(mark))
            return textOr(decodedAs(encoding, QByteArrayView(content).sliced(mark.size())));
    }
    if (const auto text = decodedAs(QStringDecoder::Utf8, content))
        return hasEscapes(*text) ? textOr(text::fromIso2022Jp(content)) : *text;
    return textOr(text::fromCp932(content));
}

base::Result<QString> readTextFile(const QString &fileName, qint64 highestSize)
{
    QFile file(fileName);
    if (const base::Status opened = openText(file, highestSize); !opened)
        return opened.error();
    const QByteArray content = file.read(highestSize);
    return file.error() == QFileDevice::NoError ? decodeText(content) : notReadable(file);
}

base::Status TextFile::open(const QString &fileName, qint64 highestSize)
{
    m_file.setFileName(fileName);
    if (const base::Status opened = openText(m_file, highestSize); !opened)
        return opened;
    const base::Status found = findEncoding();
    rewind();
    return found;
}

base::Status TextFile::findEncoding()
{
    const QByteArray head = m_file.peek(3);
    for (const auto &[mark, encoding] : marks) {
        if (head.startsWith(mark)) {
            m_mark = mark.size();
            m_unicode = encoding;
            const bool isWhole = mark.size() == 3 || m_file.size() % 2 == 0;
            return isWhole ? base::Status() : base::Status(unknownText());
        }
    }
    bool escaped = false;
    const bool unicode = isUtf8(escaped);
    if (escaped && unicode)
        m_encoding = Encoding::Iso2022Jp;
    else if (!unicode)
        m_encoding = Encoding::CodePage;
    return m_file.error() == QFileDevice::NoError ? base::Status() : base::Status(notReadable(m_file));
}

bool TextFile::isUtf8(bool &escaped)
{
    rewind();
    for (QString piece; next(piece);)
        escaped = escaped || hasEscapes(piece);
    return bool(m_state);
}

void TextFile::rewind()
{
    if (!m_file.isOpen())
        return;
    m_file.seek(m_mark);
    if (m_encoding == Encoding::Unicode)
        m_decoder = QStringDecoder(m_unicode);
    m_state = {};
}

bool TextFile::next(QString &piece)
{
    if (!m_state || m_file.atEnd())
        return false;
    QByteArray bytes = m_file.read(bytesAtOnce);
    // A character of the other two is never parted by a line end, nor reaches a set of characters beyond it.
    if (m_encoding != Encoding::Unicode && !m_file.atEnd() && !bytes.endsWith('\n'))
        bytes += m_file.readLine();
    if (m_file.error() != QFileDevice::NoError)
        m_state = notReadable(m_file);
    else if (!decode(bytes, piece))
        m_state = unknownText();
    return bool(m_state);
}

bool TextFile::decode(const QByteArray &bytes, QString &piece)
{
    if (m_encoding == Encoding::Unicode) {
        piece = m_decoder.decode(bytes);
        // A character that the end cuts short is seen by what follows it.
        if (m_file.atEnd() && m_unicode == QStringDecoder::Utf8)
            (void)QString(m_decoder.decode("\n"));
        return !m_decoder.hasError();
    }
    const auto text = m_encoding == Encoding::CodePage ? text::fromCp932(bytes) : text::fromIso2022Jp(bytes);
    piece = text.value_or(QString());
    return text.has_value();
}

} // namespace tables

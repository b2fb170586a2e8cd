#include "tables/text_file.h"

#include "text/cp932.h"

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

} // namespace

base::Result<QString> decodeText(const QByteArray &content)
{
    for (const auto &[mark, encoding] : marks) {
        if (content.startsWith(mark))
            return textOr(decodedAs(encoding, QByteArrayView(content).sliced(mark.size())));
    }
    if (const auto text = decodedAs(QStringDecoder::Utf8, content))
        return *text;
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
            m_encoding = encoding;
            const bool isWhole = mark.size() == 3 || m_file.size() % 2 == 0;
            return isWhole ? base::Status() : base::Status(unknownText());
        }
    }
    m_encoding = QStringDecoder::Utf8;
    rewind();
    for (QString piece; next(piece);) {
    }
    if (m_file.error() == QFileDevice::NoError && !m_state)
        m_encoding.reset();
    return m_file.error() == QFileDevice::NoError ? base::Status() : base::Status(notReadable(m_file));
}

void TextFile::rewind()
{
    if (!m_file.isOpen())
        return;
    m_file.seek(m_mark);
    if (m_encoding)
        m_decoder = QStringDecoder(*m_encoding);
    m_state = {};
}

bool TextFile::next(QString &piece)
{
    if (!m_state || m_file.atEnd())
        return false;
    QByteArray bytes = m_file.read(bytesAtOnce);
    // A character of the code page is never parted by a line end.
    if (!m_encoding && !m_file.atEnd() && !bytes.endsWith('\n'))
        bytes += m_file.readLine();
    if (m_file.error() != QFileDevice::NoError)
        m_state = notReadable(m_file);
    else if (!decode(bytes, piece))
        m_state = unknownText();
    return bool(m_state);
}

bool TextFile::decode(const QByteArray &bytes, QString &piece)
{
    if (m_encoding) {
        piece = m_decoder.decode(bytes);
        // A character that the end cuts short is seen by what follows it.
        if (m_file.atEnd() && *m_encoding == QStringDecoder::Utf8)
            (void)QString(m_decoder.decode("\n"));
        return !m_decoder.hasError();
    }
    const auto text = text::fromCp932(bytes);
    piece = text.value_or(QString());
    return text.has_value();
}

} // namespace tables

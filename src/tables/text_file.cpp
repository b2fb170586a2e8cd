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

base::Result<QString> textOr(const std::optional<QString> &text)
{
    if (!text)
        return base::Error{u"文字コードが UTF-8 でもシフト JIS でもないため、読み込めませんでした。"
                           "保存し直してから、もう一度お試しください。"_s};
    return *text;
}

} // namespace

base::Result<QString> decodeText(const QByteArray &content)
{
    if (content.startsWith("\xff\xfe"))
        return textOr(decodedAs(QStringDecoder::Utf16LE, QByteArrayView(content).sliced(2)));
    if (content.startsWith("\xfe\xff"))
        return textOr(decodedAs(QStringDecoder::Utf16BE, QByteArrayView(content).sliced(2)));
    if (content.startsWith("\xef\xbb\xbf"))
        return textOr(decodedAs(QStringDecoder::Utf8, QByteArrayView(content).sliced(3)));
    if (const auto text = decodedAs(QStringDecoder::Utf8, content))
        return *text;
    return textOr(text::fromCp932(content));
}

base::Result<QString> readTextFile(const QString &fileName, qint64 highestSize)
{
    const QString name = QFileInfo(fileName).fileName();
    // Opening a pipe would wait for its writer, a device has no end.
    if (!QFileInfo(fileName).isFile())
        return base::Error{u"ファイル「%1」が見つかりません。"_s.arg(name)};
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return base::Error{u"ファイル「%1」を読み取れませんでした。(%2)"_s.arg(name, file.errorString())};
    if (file.size() > highestSize)
        return base::Error{u"ファイル「%1」が大きすぎるため（%2 MB まで）、読み込みませんでした。"_s.arg(
            name, QString::number(highestSize / (1024 * 1024)))};
    const QByteArray content = file.read(highestSize);
    if (file.error() != QFileDevice::NoError)
        return base::Error{u"ファイル「%1」を読み取れませんでした。(%2)"_s.arg(name, file.errorString())};
    return decodeText(content);
}

} // namespace tables

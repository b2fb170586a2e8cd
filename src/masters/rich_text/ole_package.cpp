#include "masters/rich_text/ole_package.h"

#include "masters/rich_text/rich_text_limits.h"
#include "masters/rich_text/rtf_encoding.h"
#include "masters/rich_text/text_look.h"

#include "text/cp932.h"

#include <QDataStream>

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{

constexpr quint32 oleVersion = 0x0501;
constexpr quint32 embeddedObject = 2;
constexpr quint16 packageSignature = 2;
constexpr quint32 embeddedFile = 0x00030000;
constexpr quint32 longestString = 4096; // bytes; far above any file name

QByteArray ansiName(const QString &fileName)
{
    QByteArray name;
    for (QChar c : fileName)
        name += text::toCp932(QStringView(&c, 1)).value_or("_");
    return name + '\0';
}

void writeString(QDataStream &out, const QByteArray &withNul)
{
    out << quint32(withNul.size());
    out.writeRawData(withNul.constData(), static_cast<int>(withNul.size()));
}

void writeWide(QDataStream &out, const QString &s)
{
    out << quint32(s.size());
    for (QChar c : s)
        out << quint16(c.unicode());
}

QByteArray packageContent(const Attachment &attachment)
{
    QByteArray content;
    QDataStream out(&content, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    const QByteArray name = ansiName(attachment.fileName);
    out << packageSignature;
    out.writeRawData(name.constData(), static_cast<int>(name.size())); // label
    out.writeRawData(name.constData(), static_cast<int>(name.size())); // original path
    out << embeddedFile;
    writeString(out, name); // path to unpack to
    out << quint32(attachment.data.size());
    out.writeRawData(attachment.data.constData(), static_cast<int>(attachment.data.size()));
    for (int i = 0; i < 3; ++i) // the same three in Unicode
        writeWide(out, attachment.fileName);
    return content;
}

/// Reads little-endian values from bytes that may end anywhere.
class Reader
{
public:
    explicit Reader(const QByteArray &data)
        : m_stream(data)
    {
        m_stream.setByteOrder(QDataStream::LittleEndian);
    }

    template <typename T>
    T value()
    {
        T v = 0;
        m_stream >> v;
        return v;
    }

    QByteArray block(quint32 size, quint32 most)
    {
        if (size > most || qint64(size) > m_stream.device()->bytesAvailable()) {
            m_stream.setStatus(QDataStream::ReadPastEnd);
            return {};
        }
        QByteArray bytes(static_cast<qsizetype>(size), Qt::Uninitialized);
        m_stream.readRawData(bytes.data(), static_cast<int>(size));
        return bytes;
    }

    QByteArray lengthPrefixed() { return block(value<quint32>(), longestString); }

    QByteArray nulTerminated()
    {
        QByteArray bytes;
        for (char c = 0; ok() && m_stream.readRawData(&c, 1) == 1 && c;)
            bytes += c;
        return bytes;
    }

    QString wide()
    {
        const QByteArray bytes = block(2 * std::min(value<quint32>(), longestString), longestString);
        QString s;
        for (qsizetype i = 0; i + 1 < bytes.size(); i += 2)
            s += QChar(
                static_cast<char16_t>(static_cast<uchar>(bytes[i]) | static_cast<uchar>(bytes[i + 1]) << 8));
        return s;
    }

    bool ok() const { return m_stream.status() == QDataStream::Ok; }

private:
    QDataStream m_stream;
};

QString safeFileName(const QString &stored)
{
    const qsizetype folder = std::max(stored.lastIndexOf(u'/'), stored.lastIndexOf(u'\\'));
    QString name = plainCharacters(QStringView(stored).mid(folder + 1)).left(255);
    name.remove(u'\t');
    name = name.trimmed();
    return name.isEmpty() || name == u"."_s || name == u".."_s ? u"添付ファイル"_s : name;
}

std::optional<Attachment> unpack(const QByteArray &content)
{
    Reader in(content);
    if (in.value<quint16>() != packageSignature)
        return {};
    const QByteArray label = in.nulTerminated();
    in.nulTerminated(); // original path
    if (in.value<quint32>() != embeddedFile)
        return {};
    in.lengthPrefixed(); // path to unpack to
    Attachment attachment;
    attachment.data = in.block(in.value<quint32>(), quint32(limits::attachmentBytes));
    if (!in.ok())
        return {};
    in.wide(); // the paths and the label again, missing in older packages
    const QString wideLabel = in.wide();
    attachment.fileName =
        safeFileName(in.ok() && !wideLabel.isEmpty() ? wideLabel : decodeBytes(label, japaneseCodePage));
    return attachment;
}

} // namespace

QByteArray encodePackage(const Attachment &attachment)
{
    QByteArray object;
    QDataStream out(&object, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out << oleVersion << embeddedObject;
    writeString(out, QByteArray("Package\0", 8));
    writeString(out, {}); // topic
    writeString(out, {}); // item
    writeString(out, packageContent(attachment));
    out << oleVersion << quint32(0); // no picture of its own
    return object;
}

std::optional<Attachment> decodePackage(const QByteArray &object)
{
    Reader in(object);
    in.value<quint32>(); // version; not reliable
    if (in.value<quint32>() != embeddedObject || in.lengthPrefixed() != QByteArray("Package\0", 8))
        return {};
    in.lengthPrefixed(); // topic
    in.lengthPrefixed(); // item
    const QByteArray content = in.block(in.value<quint32>(), quint32(limits::fileBytes));
    return in.ok() ? unpack(content) : std::nullopt;
}

} // namespace masters

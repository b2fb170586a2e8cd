#include "registers/postal_index.h"

#include "text/cp932.h"
#include "text/numbers.h"

#include <QFile>
#include <QFileInfo>

#include <optional>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// Takes one field after another out of sequential text, as the data files were written: blanks before a
// field are passed over; a quoted field runs to the next quote, line ends included; any other to the comma
// or line end. No character of the file is both: CP932's second bytes hold neither comma nor quote.
class FieldReader
{
public:
    explicit FieldReader(QByteArrayView content)
        : m_rest(content)
    {}

    [[nodiscard]] bool atEnd()
    {
        skip(" \t\r\n");
        // Control-Z ends a text file of old.
        return m_rest.isEmpty() || m_rest.front() == '\x1a';
    }

    QByteArray next()
    {
        skip(" \t\r\n");
        const bool quoted = m_rest.startsWith('"');
        if (quoted)
            m_rest = m_rest.sliced(1);
        const QByteArray field = upTo(quoted ? "\"" : ",\r\n");
        if (quoted) {
            take();
            upTo(",\r\n");
        }
        skipEnd();
        return quoted ? field : field.trimmed();
    }

private:
    void take()
    {
        if (!m_rest.isEmpty())
            m_rest = m_rest.sliced(1);
    }

    void skip(QByteArrayView characters)
    {
        while (!m_rest.isEmpty() && characters.contains(m_rest.front()))
            take();
    }

    // The comma or line end after a field.
    void skipEnd()
    {
        if (m_rest.startsWith("\r\n"))
            take();
        take();
    }

    QByteArray upTo(QByteArrayView ends)
    {
        qsizetype length = 0;
        while (length < m_rest.size() && !ends.contains(m_rest[length]))
            ++length;
        const QByteArray field = m_rest.first(length).toByteArray();
        m_rest = m_rest.sliced(length);
        return field;
    }

    QByteArrayView m_rest;
};

// Far above 50,001 records of any real length; a larger file is not an index.
constexpr qint64 highestFileSize = 32 * 1024 * 1024; // bytes

} // namespace

db::Result<PostalIndex> loadPostalIndex(const QString &fileName)
{
    if (!QFileInfo::exists(fileName))
        return PostalIndex();
    QFile file(fileName);
    // Opening a pipe would wait for its writer, a device has no end.
    if (!QFileInfo(fileName).isFile())
        return db::Error{u"郵便番号の索引 ZIPID1.txt がファイルではないため、読み込みませんでした。"_s};
    if (!file.open(QIODevice::ReadOnly))
        return db::Error{u"郵便番号の索引 ZIPID1.txt を読み取れませんでした。("_s + file.errorString() +
                         u")"_s};
    if (file.size() > highestFileSize)
        return db::Error{u"郵便番号の索引 ZIPID1.txt が大きすぎるため、読み込みませんでした。"_s};
    const QByteArray content = file.readAll();
    FieldReader reader(content);
    PostalIndex index;
    while (!reader.atEnd()) {
        if (index.size() == highestPostalGroups)
            return db::Error{
                u"郵便番号の索引 ZIPID1.txt の件数が多すぎるため（５０００１件まで）、読み込みませんでした。"_s};
        const auto name = text::fromCp932(reader.next());
        const auto shortName = text::fromCp932(reader.next());
        const auto first = text::fromCp932(reader.next());
        const qint64 number = text::parseInteger(first.value_or(QString())).value_or(-1);
        if (!name || !shortName || number < 0 || number > 0x7fffffff)
            return db::Error{u"郵便番号の索引 ZIPID1.txt の"_s + QString::number(index.size() + 1) +
                             u"件目が正しくないため、読み込みませんでした。"_s};
        index.push_back({*name, *shortName, static_cast<int>(number)});
    }
    return index;
}

} // namespace registers

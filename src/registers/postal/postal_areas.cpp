#include "registers/postal/postal_areas.h"

#include "text/cp932.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr qsizetype codeDigits = 7;
constexpr qsizetype fieldStart = 10;     // bytes
constexpr qsizetype comparedLength = 30; // characters in which a blank ends the address
constexpr qint64 recordsAtOnce = 1024;   // read in one go: most groups, and little memory

base::Error unreadable(const QString &reason)
{
    return {u"郵便番号表 ZIPCODE.txt を読み取れませんでした。("_s + reason + u")"_s};
}

} // namespace

std::optional<QString> PostalRecord::code() const { return hyphenated(m_bytes.first(codeDigits)); }

std::optional<QString> PostalRecord::field() const
{
    const QByteArrayView bytes = m_bytes.sliced(fieldStart);
    return text::fromCp932(QByteArray::fromRawData(bytes.data(), bytes.size()));
}

QString PostalRecord::address(const QString &field)
{
    const qsizetype blank = field.indexOf(u' ');
    if (blank >= 0 && blank < comparedLength)
        return field.first(blank);
    qsizetype end = field.size();
    while (end > 0 && field[end - 1] == u' ')
        --end;
    return field.first(end);
}

PostalAreas::PostalAreas(const QString &fileName)
    : m_file(fileName)
{}

base::Status PostalAreas::open()
{
    // Opening a pipe would wait for its writer, a device has no end.
    if (!QFileInfo(m_file).isFile())
        return unreadable(u"ファイルがありません"_s);
    if (!m_file.open(QIODevice::ReadOnly))
        return unreadable(m_file.errorString());
    m_count = m_file.size() / PostalRecord::size;
    return {};
}

base::Status PostalAreas::read(qint64 first, qint64 last,
                               const std::function<bool(const PostalRecord &)> &visit)
{
    last = std::min(last, m_count);
    if (first < 1 || first > last)
        return {};
    if (!m_file.seek((first - 1) * PostalRecord::size))
        return unreadable(m_file.errorString());
    while (first <= last) {
        const qint64 wanted = std::min(last - first + 1, recordsAtOnce);
        const QByteArray block = m_file.read(wanted * PostalRecord::size);
        if (block.size() != wanted * PostalRecord::size)
            return unreadable(m_file.errorString());
        for (qint64 i = 0; i < wanted; ++i)
            if (!visit(
                    PostalRecord(QByteArrayView(block).sliced(i * PostalRecord::size, PostalRecord::size))))
                return {};
        first += wanted;
    }
    return {};
}

std::optional<QString> hyphenated(QByteArrayView digits)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (digits.size() != codeDigits || !std::all_of(digits.begin(), digits.end(), isDigit))
        return std::nullopt;
    return QString::fromLatin1(digits.first(3)) + u'-' + QString::fromLatin1(digits.sliced(3));
}

} // namespace registers

#include "registers/postal/postal_index.h"

#include "registers/postal/postal_folding.h"
#include "text/cp932.h"
#include "text/numbers.h"
#include "text/sequential_fields.h"

#include <QFile>
#include <QFileInfo>

#include <optional>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// Far above 50,001 records of any real length; a larger file is not an index.
constexpr qint64 highestFileSize = 32 * 1024 * 1024; // bytes

} // namespace

const std::vector<PostalGroup> &PostalIndex::folded() const
{
    if (m_folded.empty()) {
        m_folded.reserve(m_groups.size());
        for (const PostalGroup &group : m_groups)
            m_folded.push_back({foldedPlace(group.name), foldedPlace(group.shortName), group.firstRecord});
    }
    return m_folded;
}

base::Result<PostalIndex> loadPostalIndex(const QString &fileName)
{
    if (!QFileInfo::exists(fileName))
        return PostalIndex();
    QFile file(fileName);
    // Opening a pipe would wait for its writer, a device has no end.
    if (!QFileInfo(fileName).isFile())
        return base::Error{u"郵便番号の索引 ZIPID1.txt がファイルではないため、読み込みませんでした。"_s};
    if (!file.open(QIODevice::ReadOnly))
        return base::Error{u"郵便番号の索引 ZIPID1.txt を読み取れませんでした。("_s + file.errorString() +
                           u")"_s};
    if (file.size() > highestFileSize)
        return base::Error{u"郵便番号の索引 ZIPID1.txt が大きすぎるため、読み込みませんでした。"_s};
    const QByteArray content = file.readAll();
    text::SequentialFields reader(content);
    std::vector<PostalGroup> groups;
    while (!reader.atEnd()) {
        if (groups.size() == highestPostalGroups)
            return base::Error{
                u"郵便番号の索引 ZIPID1.txt の件数が多すぎるため（５０００１件まで）、読み込みませんでした。"_s};
        const auto name = text::fromCp932(reader.next().toByteArray());
        const auto shortName = text::fromCp932(reader.next().toByteArray());
        const auto first = text::fromCp932(reader.next().toByteArray());
        const qint64 number = text::parseInteger(first.value_or(QString())).value_or(-1);
        if (!name || !shortName || number < 0 || number > 0x7fffffff)
            return base::Error{u"郵便番号の索引 ZIPID1.txt の"_s + QString::number(groups.size() + 1) +
                               u"件目が正しくないため、読み込みませんでした。"_s};
        groups.push_back({*name, *shortName, static_cast<int>(number)});
    }
    return PostalIndex(std::move(groups));
}

} // namespace registers

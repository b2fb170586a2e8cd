#include "db/file_header.h"

#include "db/old_file.h"
#include "db/schema.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

// Offsets in bytes, from SQLite's description of its file format.
constexpr qsizetype headerSize = 100;
constexpr qsizetype versionAt = 60;
constexpr qsizetype applicationIdAt = 68;

} // namespace

Status checkHeader(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (!info.isFile())
        return Error{u"ファイルが見つからないため、開けませんでした。("_s + fileName + u")"_s};
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return Error{u"ファイルを読み取れないため、開けませんでした。("_s + file.errorString() + u")"_s};
    const QByteArray header = file.read(headerSize);
    if (oldFormatOf(fileName) != OldFormat::None)
        return Error{u"以前の形式のデータベースファイルのため、そのままでは開けませんでした。"
                     "「ファイル」「開く」で選ぶと、新しい形式に変換できます。"_s};
    if (header.size() < headerSize || !header.startsWith(QByteArrayView("SQLite format 3\0", 16)))
        return Error{u"データベースファイルではないため、開けませんでした。"_s};
    if (qFromBigEndian<quint32>(header.constData() + applicationIdAt) != applicationId)
        return Error{u"このプログラムのデータベースファイルではないため、開けませんでした。"_s};
    const auto version = qFromBigEndian<quint32>(header.constData() + versionAt);
    if (version > quint32(schemaVersion))
        return Error{
            u"新しい版のプログラムで作られたデータベースのため、開けませんでした。プログラムを更新してください。"_s};
    if (version != quint32(schemaVersion))
        return Error{u"データベースの版が正しくないため、開けませんでした。"_s};
    return {};
}

} // namespace db

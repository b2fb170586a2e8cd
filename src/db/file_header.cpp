#include "db/file_header.h"

#include "db/old_files/old_file.h"
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

bool isSqlite(const QByteArray &header)
{
    return header.size() == headerSize && header.startsWith(QByteArrayView("SQLite format 3\0", 16));
}

bool isOurs(const QByteArray &header)
{
    return qFromBigEndian<quint32>(header.constData() + applicationIdAt) == applicationId;
}

// The toolkit knows a name as text: of bytes that are none it keeps a sign alone, and finds no file by it.
base::Error notThere(const QString &fileName)
{
    if (fileName.contains(QChar::ReplacementCharacter))
        return {
            u"ファイルまたはフォルダの名前が UTF-8 でない文字コードで付けられているため、開けませんでした。"
            "名前を付け直してから開いてください。("_s +
            fileName + u")"_s};
    return {u"ファイルが見つからないため、開けませんでした。("_s + fileName + u")"_s};
}

} // namespace

int storedVersion(const QString &fileName)
{
    QFile file(fileName);
    const QByteArray header =
        QFileInfo(fileName).isFile() && file.open(QIODevice::ReadOnly) ? file.read(headerSize) : QByteArray();
    return isSqlite(header) && isOurs(header) ? qFromBigEndian<qint32>(header.constData() + versionAt) : 0;
}

base::Status checkHeader(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (!info.isFile())
        return notThere(fileName);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return base::Error{u"ファイルを読み取れないため、開けませんでした。("_s + file.errorString() +
                           u")"_s};
    const QByteArray header = file.read(headerSize);
    if (oldFormatOf(fileName) != OldFormat::None)
        return base::Error{u"以前の形式のデータベースファイルのため、そのままでは開けませんでした。"
                           "「ファイル」「開く」で選ぶと、新しい形式に変換できます。"_s};
    if (!isSqlite(header))
        return base::Error{
            u"データベースファイルではないため、開けませんでした。壊れている場合は、「環境設定」の"
            "「データベースの修復/最適化」を実行してください。"_s};
    if (!isOurs(header))
        return base::Error{u"このプログラムのデータベースファイルではないため、開けませんでした。"_s};
    const auto version = qFromBigEndian<quint32>(header.constData() + versionAt);
    if (version > quint32(schemaVersion))
        return base::Error{
            u"新しい版のプログラムで作られたデータベースのため、開けませんでした。プログラムを更新してください。"_s};
    if (version != quint32(schemaVersion))
        return base::Error{u"データベースの版が正しくないため、開けませんでした。"_s};
    return {};
}

} // namespace db

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

struct Kind
{
    QByteArrayView beginning;
    const char16_t *name;
};

const Kind foreignKinds[] = {
    {"%PDF-", u"PDF の文書"},
    {"PK\x03\x04", u"表計算や文書、または圧縮されたファイル"},
    {"\xD0\xCF\x11\xE0", u"以前の形式の表計算や文書のファイル"},
    {"{\\rtf", u"書式のある文書（RTF）"},
    {"\x89PNG", u"画像"},
    {"\xFF\xD8\xFF", u"画像"},
    {"GIF8", u"画像"},
};

QString foreignKind(const QByteArray &header)
{
    for (const Kind &kind : foreignKinds) {
        if (header.startsWith(kind.beginning))
            return QString::fromUtf16(kind.name);
    }
    return {};
}

} // namespace

QString foreignKindOf(const QString &fileName)
{
    QFile file(fileName);
    return QFileInfo(fileName).isFile() && file.open(QIODevice::ReadOnly) ? foreignKind(file.read(headerSize))
                                                                          : QString();
}

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
    if (const QString kind = foreignKind(header); !kind.isEmpty())
        return base::Error{
            u"このファイルは「%1」で、データベースファイルではないため、開けませんでした。"
            "データベースのファイル（名前の終わりが「.cdb」のもの）を選んでください。"_s.arg(kind)};
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

#include "workspace/document_places.h"

#include "base/file_rights.h"
#include "workspace/backup_places.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace workspace
{

namespace
{

const QString ending = u".発行控"_s;

// Without what the program puts behind the name of a file that it keeps.
QString stemOf(const QString &database)
{
    static const QRegularExpression dated(u"^(.+?~[0-9a-f]{6}) .*$"_s);
    static const QRegularExpression kept(
        u"^(.+) (?:復元前|破損|上書き前|削除前|変更あり|別のファイル|未来の日付|写し|版\\d+) "
        "\\d{4,}-\\d\\d-\\d\\d(?: \\(\\d+\\))?$"_s);
    QString stem = QFileInfo(database).completeBaseName();
    for (const QRegularExpression *pattern : {&kept, &dated}) {
        for (auto match = pattern->match(stem); match.hasMatch(); match = pattern->match(stem))
            stem = match.captured(1);
    }
    return stem;
}

QStringList foldersOfBackups(const QString &applicationFolder)
{
    QStringList folders{documentFolderOf(backupFileIn(applicationFolder))};
    for (const QString &place : {backupFolderIn(applicationFolder), openedBackupsIn(applicationFolder)}) {
        const QDir folder(place);
        const QStringList names = folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        for (const QString &name : names) {
            if (name.endsWith(ending))
                folders << folder.filePath(name);
        }
    }
    return folders;
}

} // namespace

QString documentFolderOf(const QString &database)
{
    const QString file = base::linkedFile(QFileInfo(database).absoluteFilePath());
    return QDir(QFileInfo(file).absolutePath()).filePath(stemOf(file) + ending);
}

// Every document is known by its contents, so that a folder of another shop does no harm.
QStringList documentFoldersOf(const QString &database, const QString &applicationFolder)
{
    QStringList folders{documentFolderOf(database)};
    if (isAnyBackup(database, applicationFolder))
        folders << foldersOfBackups(applicationFolder);
    else
        folders << documentFolderOf(
            QDir(backupFolderIn(applicationFolder)).filePath(datedPrefix(database) + u".cdb"_s));
    folders.removeDuplicates();
    return folders;
}

} // namespace workspace

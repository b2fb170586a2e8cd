#include "workspace/backup_places.h"

#include "base/dated_name.h"
#include "base/same_file.h"
#include "db/schema.h"
#include "workspace/workspace.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace workspace
{

namespace
{

bool liesIn(const QString &fileName, const QString &folder)
{
    return base::isSameFile(QFileInfo(fileName).absolutePath(), folder);
}

// "BackupKanbalore 変更あり 2026-04-01.cdb": an earlier one that was kept.
bool isKeptBackup(const QString &fileName, const QString &applicationFolder)
{
    const QFileInfo info(fileName);
    const QString stem = QFileInfo(backupFileIn(applicationFolder)).completeBaseName() + u' ';
    return info.fileName().startsWith(stem, Qt::CaseInsensitive) && liesIn(fileName, applicationFolder);
}

} // namespace

QString backupFileIn(const QString &applicationFolder)
{
    return joinPath(applicationFolder, QString::fromUtf16(db::backupFileName));
}

QString backupFolderIn(const QString &applicationFolder) { return joinPath(applicationFolder, u"Backup"_s); }

QString openedBackupsIn(const QString &applicationFolder)
{
    return joinPath(backupFolderIn(applicationFolder), u"開いたバックアップ"_s);
}

bool isBackupFile(const QString &fileName, const QString &applicationFolder)
{
    return base::isSameFile(fileName, backupFileIn(applicationFolder));
}

bool isAnyBackup(const QString &fileName, const QString &applicationFolder)
{
    return isBackupFile(fileName, applicationFolder) || isStoredBackup(fileName, applicationFolder) ||
           liesIn(fileName, openedBackupsIn(applicationFolder));
}

bool isStoredBackup(const QString &fileName, const QString &applicationFolder)
{
    return isKeptBackup(fileName, applicationFolder) || liesIn(fileName, backupFolderIn(applicationFolder));
}

// Two files of one name in two folders are two databases.
QString datedPrefix(const QString &fileName)
{
    const QFileInfo info(fileName);
    const QString path =
        info.canonicalFilePath().isEmpty() ? info.absoluteFilePath() : info.canonicalFilePath();
    const QByteArray hash =
        QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1).toHex().first(6);
    return info.completeBaseName() + u'~' + QString::fromLatin1(hash) + u' ';
}

DatedName readDatedName(const QString &name)
{
    static const QRegularExpression pattern(uR"(^(?<database>.+)~[0-9a-f]{6} (?<rest>.*)\.cdb$)"_s);
    static const QRegularExpression dayPattern(uR"(^\d{4,}-\d\d-\d\d$)"_s);
    const auto match = pattern.match(name);
    const QString rest = match.captured(u"rest"_s);
    return {match.captured(u"database"_s), dayPattern.match(rest).hasMatch() ? rest : QString()};
}

bool isAfter(const QString &day, const QDate &today)
{
    const QString now = base::isoDay(today);
    return day.size() > now.size() || (day.size() == now.size() && day > now);
}

} // namespace workspace

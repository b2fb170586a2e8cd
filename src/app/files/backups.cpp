#include "app/files/backups.h"

#include "app/files/backup_origin.h"
#include "app/files/backup_places.h"
#include "app/files/database_files.h"
#include "base/dated_name.h"
#include "base/file_rights.h"
#include "db/care/backup.h"
#include "db/care/use_mark.h"
#include "db/connection.h"
#include "db/old_files/old_file.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

constexpr int patience = 3000; // ms; other programs end at the same time

// In this file each backup has its line when it is made. The dates in the names are those of a clock, which
// may have been wrong for a while.
QString orderFileIn(const QDir &folder) { return folder.filePath(u"order.txt"_s); }

void noteOrder(const QDir &folder, const QString &name)
{
    QFile file(orderFileIn(folder));
    if (file.open(QIODevice::WriteOnly | QIODevice::Append))
        file.write(name.toUtf8() + '\n');
}

// Those without a line were made before there was such a file; their order is that of their days.
QStringList inOrderOfMaking(const QDir &folder, QStringList names)
{
    QFile file(orderFileIn(folder));
    const QStringList made = file.open(QIODevice::ReadOnly)
                                 ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                                 : QStringList();
    names.sort();
    std::stable_sort(names.begin(), names.end(), [&made](const QString &one, const QString &other) {
        return made.lastIndexOf(one) < made.lastIndexOf(other);
    });
    return names;
}

QStringList ownBackups(const QDir &folder, const QString &prefix)
{
    QStringList own;
    const QStringList all = folder.entryList(QDir::Files);
    for (const QString &name : all) {
        if (name.startsWith(prefix) && !readDatedName(name).day.isEmpty())
            own << name;
    }
    return own;
}

void removeOld(const QDir &folder, const QString &prefix, const QString &justMade)
{
    QStringList own = inOrderOfMaking(folder, ownBackups(folder, prefix));
    own.removeOne(justMade);
    while (own.size() >= daysKept)
        QFile::remove(folder.filePath(own.takeFirst()));
}

// Whichever clock was wrong, that one or today's: they are out of the way of the rotation and stay.
QStringList putFutureAside(const QDir &folder, const QString &prefix, const QDate &today)
{
    QStringList aside;
    const QStringList own = ownBackups(folder, prefix);
    for (const QString &name : own) {
        if (!isAfter(readDatedName(name).day, today))
            continue;
        const QString to = base::datedName(folder.filePath(name), u"未来の日付"_s, today);
        if (QFile::rename(folder.filePath(name), to))
            aside << QFileInfo(to).fileName();
    }
    return aside;
}

// Each of them is a dated backup of that file too.
void removeKeptOfOthers(const QString &backup)
{
    const QFileInfo info(backup);
    const QDir folder(info.path());
    const QFileInfoList kept =
        folder.entryInfoList({info.completeBaseName() + u' ' + ofAnotherFile + u" *.cdb"_s}, QDir::Files,
                             QDir::Time | QDir::Reversed);
    for (qsizetype i = 0; i < kept.size() - daysKept; ++i)
        QFile::remove(kept.at(i).filePath());
}

} // namespace

base::Status backUpAtExit(db::Connection &connection, const QString &applicationFolder, const QDate &today,
                          const base::Progress &progress)
{
    const QString fileName = connection.fileName();
    if (!connection.isOpen() || isBackupFile(fileName, applicationFolder) ||
        isInitialFile(fileName, applicationFolder))
        return {};
    const QString backup = base::linkedFile(backupFileIn(applicationFolder));
    if (const base::Status aside = db::putOldFileAside(backup); !aside)
        return aside;
    const auto keepAs = [&](const QString &copy) {
        const QString why = QFileInfo::exists(backup) ? reasonToKeepLast(backup, connection) : QString();
        noteOrigin(backup, fileName, copy);
        return why.isEmpty() ? QString() : base::datedName(backup, why, today);
    };
    const base::Status done = db::copyDatabase(connection, backup, progress, {keepAs, patience});
    if (done)
        removeKeptOfOthers(backup);
    return done;
}

base::Result<QStringList> backUpDated(db::Connection &connection, const QString &applicationFolder,
                                      const QDate &today, const base::Progress &progress)
{
    const QDir folder(backupFolderIn(applicationFolder));
    const QString fileName = connection.fileName();
    if (!connection.isOpen() || isInitialFile(fileName, applicationFolder) ||
        isStoredBackup(fileName, applicationFolder))
        return QStringList();
    if (!base::makeSharedFolder(folder.path()))
        return base::Error{u"フォルダ「"_s + folder.path() + u"」を作成できませんでした。"_s};
    const QString prefix = datedPrefix(fileName);
    const QString name = prefix + base::isoDay(today) + u".cdb"_s;
    const QString target = folder.filePath(name);
    const auto keepAs = [&](const QString &) {
        const QString why = QFileInfo::exists(target) ? reasonToKeepDated(target, connection) : QString();
        return why.isEmpty() ? QString() : base::datedName(target, why, today);
    };
    if (const base::Status copied = db::copyDatabase(connection, target, progress, {keepAs, patience});
        !copied)
        return copied.error();
    noteOrder(folder, name);
    const QStringList aside = putFutureAside(folder, prefix, today);
    removeOld(folder, prefix, name);
    return aside;
}

base::Status restoreBackup(const QString &from, const QString &target, const QString &kept,
                           const base::Progress &progress)
{
    db::UseMark mark;
    const base::Status alone = mark.set(target, db::UseMark::Kind::Exclusive);
    return alone ? db::copyDatabase(from, target, mark, db::keptAs(kept), progress) : alone;
}

} // namespace app

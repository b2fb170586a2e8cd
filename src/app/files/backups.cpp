#include "app/files/backups.h"

#include "app/files/backup_origin.h"
#include "app/files/database_files.h"
#include "app/files/shop_documents.h"
#include "base/dated_name.h"
#include "base/file_rights.h"
#include "base/replacement.h"
#include "db/care/backup.h"
#include "db/care/use_mark.h"
#include "db/connection.h"
#include "db/old_files/old_file.h"
#include "workspace/backup_places.h"

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

QStringList notedOrder(const QDir &folder)
{
    QFile file(orderFileIn(folder));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                                          : QStringList();
}

// The last line of each backup that is still there.
void shortenOrder(const QDir &folder)
{
    const QStringList made = notedOrder(folder);
    QStringList kept;
    for (qsizetype i = 0; i < made.size(); ++i) {
        if (made.lastIndexOf(made.at(i)) == i && folder.exists(made.at(i)))
            kept << made.at(i);
    }
    const QByteArray text = kept.join(u'\n').toUtf8() + '\n';
    base::Replacement file(orderFileIn(folder));
    QFile writing(file.name());
    if (file.begin() && writing.open(QIODevice::WriteOnly) && writing.write(text) == text.size()) {
        writing.close();
        (void)file.finish(); // the long one tells the same
    }
}

void noteOrder(const QDir &folder, const QString &name)
{
    // Two programs that back up at the same time each add their line; a whole file of one would lose the
    // other's, so that it is seldom made.
    constexpr qint64 longest = 20000; // bytes
    QFile file(orderFileIn(folder));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    file.write(name.toUtf8() + '\n');
    const bool isLong = file.size() > longest;
    file.close();
    if (isLong)
        shortenOrder(folder);
}

// Those without a line were made before there was such a file; their order is that of their days.
QStringList inOrderOfMaking(const QDir &folder, QStringList names)
{
    const QStringList made = notedOrder(folder);
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
        if (name.startsWith(prefix) && !workspace::readDatedName(name).day.isEmpty())
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
        if (!workspace::isAfter(workspace::readDatedName(name).day, today))
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
    const QString stem = info.completeBaseName() + u' ' + ofAnotherFile + u' ';
    QFileInfoList kept = folder.entryInfoList({u"*.cdb"_s}, QDir::Files, QDir::Time | QDir::Reversed);
    kept.removeIf([&stem](const QFileInfo &file) { return !file.fileName().startsWith(stem); });
    for (qsizetype i = 0; i < kept.size() - daysKept; ++i)
        QFile::remove(kept.at(i).filePath());
}

} // namespace

base::Status backUpAtExit(db::Connection &connection, const QString &applicationFolder, const QDate &today,
                          const base::Progress &progress)
{
    const QString fileName = connection.fileName();
    if (!connection.isOpen() || workspace::isBackupFile(fileName, applicationFolder) ||
        isInitialFile(fileName, applicationFolder))
        return {};
    const QString backup = base::linkedFile(workspace::backupFileIn(applicationFolder));
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
    const QDir folder(workspace::backupFolderIn(applicationFolder));
    const QString fileName = connection.fileName();
    if (!connection.isOpen() || isInitialFile(fileName, applicationFolder) ||
        workspace::isStoredBackup(fileName, applicationFolder))
        return QStringList();
    if (!base::makeSharedFolder(folder.path()))
        return base::Error{u"フォルダ「"_s + folder.path() + u"」を作成できませんでした。"_s};
    const QString prefix = workspace::datedPrefix(fileName);
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

base::Result<BackedUp> backUpDay(db::Connection &connection, const QString &applicationFolder,
                                 const QDate &today, const base::Progress &progress)
{
    const auto dated = backUpDated(connection, applicationFolder, today, progress);
    if (!dated)
        return dated.error();
    return BackedUp{*dated, backUpDocuments(connection, applicationFolder, progress)};
}

base::Result<BackedUp> backUpWholly(db::Connection &connection, const QString &applicationFolder,
                                    const QDate &today, const base::Progress &progress)
{
    const base::Status last = backUpAtExit(connection, applicationFolder, today, progress);
    if (!last && last.error().cancelled)
        return last.error();
    auto day = backUpDay(connection, applicationFolder, today, progress);
    return last ? day : last.error();
}

base::Status restoreBackup(const QString &from, const QString &target, const QString &kept,
                           const base::Progress &progress)
{
    db::UseMark mark;
    const base::Status alone = mark.set(target, db::UseMark::Kind::Exclusive);
    return alone ? db::copyDatabase(from, target, mark, db::keptAs(kept), progress) : alone;
}

} // namespace app

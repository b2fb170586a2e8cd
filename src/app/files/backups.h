#pragma once

#include "base/progress.h"
#include "base/result.h"

#include <QDateTime>
#include <QStringList>

#include <vector>

namespace db
{
class Connection;
}

namespace app
{

/// So many days worked are kept of each database.
inline constexpr int daysKept = 10;

/// Copies the open database to the file of \a today in the folder Backup of \a applicationFolder, and then
/// removes this database's backups beyond the last ten days worked. A backup itself is not backed up.
base::Status backUpDated(db::Connection &connection, const QString &applicationFolder, const QDate &today,
                         const base::Progress &progress = base::unwatched);

/// A backup as it is listed.
struct Backup
{
    QString fileName;
    QString database; // of which it is a copy: the name of that file
    QDateTime written;
    qint64 size = 0; // bytes
    bool isSound = false;
    QString finding;      // "正常", or what keeps it from being opened
    qint64 customers = 0; // of a sound one
    qint64 slips = 0;
};

/// All backups in \a applicationFolder and its folder Backup, the newest first, each after SQLite's integrity
/// check.
base::Result<std::vector<Backup>> checkedBackups(const QString &applicationFolder,
                                                 const base::Progress &progress);

/// Puts a copy of the backup \a from in the place of the closed file \a target, which stays as \a kept.
base::Status restoreBackup(const QString &from, const QString &target, const QString &kept,
                           const base::Progress &progress);

} // namespace app

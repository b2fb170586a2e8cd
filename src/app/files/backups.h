#pragma once

#include "base/progress.h"
#include "base/result.h"

#include <QDate>
#include <QStringList>

namespace db
{
class Connection;
}

namespace app
{

/// So many days worked are kept of each database.
inline constexpr int daysKept = 10;

/// The copy at exit: the open file to the backup file. Nothing is done when it is the backup file itself,
/// when it is the initial file, which nobody works in, or when nothing is open: a file that was refused must
/// not take the place of a good backup. After a failure the old backup is still there. One that is of another
/// file, that someone worked in, or that has more rows by a tenth in any table, and by ten at least,
/// stays under a dated name.
base::Status backUpAtExit(db::Connection &connection, const QString &applicationFolder, const QDate &today,
                          const base::Progress &progress = base::unwatched);

/// Copies the open database to the file of \a today in the folder Backup of \a applicationFolder, and then
/// removes this database's backups beyond the last ten days worked. Those of a day to come are put aside.
/// \return the new names of these
base::Result<QStringList> backUpDated(db::Connection &connection, const QString &applicationFolder,
                                      const QDate &today, const base::Progress &progress = base::unwatched);

/// What is to be told of backups that were made.
struct BackedUp
{
    QStringList aside;      // the new names of those of a day to come
    QString aboutDocuments; // empty: theirs were taken along
};

/// The backup of the day, and the documents that the database names.
base::Result<BackedUp> backUpDay(db::Connection &connection, const QString &applicationFolder,
                                 const QDate &today, const base::Progress &progress = base::unwatched);

/// The same and the backup of the last exit.
base::Result<BackedUp> backUpWholly(db::Connection &connection, const QString &applicationFolder,
                                    const QDate &today, const base::Progress &progress = base::unwatched);

/// Puts a copy of the backup \a from in the place of the closed file \a target, which stays as \a kept. From
/// the beginning no other program may have \a target open.
base::Status restoreBackup(const QString &from, const QString &target, const QString &kept,
                           const base::Progress &progress);

} // namespace app

#pragma once

#include <QDate>
#include <QString>

// Where the backups are, and what their names say.
namespace workspace
{

/// The backup of the last exit.
QString backupFileIn(const QString &applicationFolder);

/// The folder of the dated ones.
QString backupFolderIn(const QString &applicationFolder);

/// Where the copies of backups lie that were opened from the list. They are worked in and never cleared away.
QString openedBackupsIn(const QString &applicationFolder);

/// Whether \a fileName is the backup of the last exit.
bool isBackupFile(const QString &fileName, const QString &applicationFolder);

/// Whether \a fileName is one that the program made as a backup, or the copy of one that was opened.
bool isAnyBackup(const QString &fileName, const QString &applicationFolder);

/// The same without those copies: what is not to be worked in.
bool isStoredBackup(const QString &fileName, const QString &applicationFolder);

/// What the dated backups of \a fileName begin with: "shop~1a2b3c ".
QString datedPrefix(const QString &fileName);

/// What a dated backup's name says.
struct DatedName
{
    QString database; // the name of the file of which it is a copy; empty: the name is no backup's
    QString day;      // "2026-04-01"; empty: kept aside, and not cleared away in its turn
};
DatedName readDatedName(const QString &name);

/// Whether the day \a day of such a name comes after \a today, whatever the clocks said.
bool isAfter(const QString &day, const QDate &today);

} // namespace workspace

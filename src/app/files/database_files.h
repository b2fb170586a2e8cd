#pragma once

#include "base/progress.h"
#include "base/same_file.h"

#include <QString>

namespace db
{
class Connection;
}

namespace workspace
{
class Settings;
}

namespace app
{

/// The database file to start with: the one named in \a commandLine, else the stored one, else the initial
/// file in \a applicationFolder. Absolute.
QString databaseToOpen(const workspace::Settings &settings, const QString &commandLine,
                       const QString &applicationFolder);

using base::isSameFile;

bool isInitialFile(const QString &fileName, const QString &applicationFolder);
bool isBackupFile(const QString &fileName, const QString &applicationFolder);

/// "すべてのファイル (*.*)" and "cdb ﾌｧｲﾙ (*.cdb)", as the file dialogs take them.
QString databaseFileFilters();

/// Copies the initial file to \a target. A file that stands there is replaced once the copy is complete.
base::Status makeFromInitialFile(const QString &target, const QString &applicationFolder);

/// The copy at exit: \a fileName, the file of \a connection, to the backup file. Nothing is done when it is
/// the backup file itself, or when nothing is open: a file that was refused must not take the place of a good
/// backup, and why it was refused has been told. After a failure the old backup is still there. A backup of
/// the earlier program is kept beside it.
base::Status backUpAtExit(db::Connection &connection, const QString &fileName,
                          const QString &applicationFolder, const base::Progress &progress = base::unwatched);

} // namespace app

#pragma once

#include "db/result.h"
#include "db/same_file.h"

#include <QString>

namespace db
{
class Connection;
}

namespace app
{

class Settings;

/// The database file to start with: the one named in \a commandLine, else the stored one, else the initial
/// file in \a applicationFolder. Absolute.
QString databaseToOpen(const Settings &settings, const QString &commandLine,
                       const QString &applicationFolder);

using db::isSameFile;

bool isInitialFile(const QString &fileName, const QString &applicationFolder);
bool isBackupFile(const QString &fileName, const QString &applicationFolder);

/// Copies the initial file to \a target. A file that stands there is replaced once the copy is complete.
db::Status makeFromInitialFile(const QString &target, const QString &applicationFolder);

/// The copy at exit: \a fileName, the file of \a connection, to the backup file. Nothing is done when it is
/// the backup file itself. After a failure the old backup is still there.
db::Status backUpAtExit(db::Connection &connection, const QString &fileName,
                        const QString &applicationFolder);

} // namespace app

#pragma once

#include "base/result.h"
#include "base/same_file.h"

#include <QString>

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

/// "すべてのファイル (*.*)" and "cdb ﾌｧｲﾙ (*.cdb)", as the file dialogs take them.
QString databaseFileFilters();

/// Copies the initial file to \a target. A file that stands there is replaced once the copy is complete, and
/// stays as \a kept.
base::Status makeFromInitialFile(const QString &target, const QString &applicationFolder,
                                 const QString &kept = {});

} // namespace app

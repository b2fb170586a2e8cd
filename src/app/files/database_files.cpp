#include "app/files/database_files.h"

#include "app/files/start_options.h"
#include "db/care/backup.h"
#include "db/connection.h"
#include "db/old_files/old_file.h"
#include "db/schema.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

QString initialFileIn(const QString &folder)
{
    return workspace::joinPath(folder, QString::fromUtf16(db::initialFileName));
}

QString backupFileIn(const QString &folder)
{
    return workspace::joinPath(folder, QString::fromUtf16(db::backupFileName));
}

} // namespace

QString databaseToOpen(const workspace::Settings &settings, const QString &commandLine,
                       const QString &applicationFolder)
{
    QString name = commandLine.isEmpty() ? settings.text(workspace::keys::mdbFileName)
                                         : databaseInCommandLine(commandLine);
    // A NUL would end the name for the operating system but not on the screen.
    name.remove(QChar(0));
    return name.isEmpty() ? initialFileIn(applicationFolder)
                          : QDir::cleanPath(QFileInfo(name).absoluteFilePath());
}

bool isInitialFile(const QString &fileName, const QString &applicationFolder)
{
    return isSameFile(fileName, initialFileIn(applicationFolder));
}

bool isBackupFile(const QString &fileName, const QString &applicationFolder)
{
    return isSameFile(fileName, backupFileIn(applicationFolder));
}

QString databaseFileFilters() { return u"すべてのファイル (*.*);;cdb ﾌｧｲﾙ (*.cdb)"_s; }

base::Status makeFromInitialFile(const QString &target, const QString &applicationFolder)
{
    return db::copyDatabase(initialFileIn(applicationFolder), target);
}

base::Status backUpAtExit(db::Connection &connection, const QString &fileName,
                          const QString &applicationFolder, const base::Progress &progress)
{
    if (isBackupFile(fileName, applicationFolder) || !connection.isOpen())
        return {};
    const QString backup = backupFileIn(applicationFolder);
    if (const base::Status aside = db::putOldFileAside(backup); !aside)
        return aside;
    return db::copyDatabase(connection, backup, progress);
}

} // namespace app

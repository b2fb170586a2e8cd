#include "app/files/database_files.h"

#include "app/files/start_options.h"
#include "db/care/backup.h"
#include "db/schema.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QDir>
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

} // namespace

QString databaseToOpen(const workspace::Settings &settings, const QString &commandLine,
                       const QString &applicationFolder)
{
    QString name = commandLine.isEmpty() ? settings.text(workspace::keys::mdbFileName)
                                         : databaseInCommandLine(commandLine);
    // A NUL would end the name for the operating system but not on the screen.
    name.remove(QChar(0));
    return name.isEmpty() ? initialFileIn(applicationFolder) : QDir::cleanPath(pathOfFile(name));
}

bool isInitialFile(const QString &fileName, const QString &applicationFolder)
{
    return isSameFile(fileName, initialFileIn(applicationFolder));
}

QString databaseFileFilters() { return u"すべてのファイル (*.*);;cdb ﾌｧｲﾙ (*.cdb)"_s; }

base::Status makeFromInitialFile(const QString &target, const QString &applicationFolder, const QString &kept)
{
    return db::copyDatabase(initialFileIn(applicationFolder), target, base::unwatched,
                            kept.isEmpty() ? db::Replacing() : db::keptAs(kept));
}

} // namespace app

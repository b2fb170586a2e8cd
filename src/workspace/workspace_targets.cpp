#include "workspace/workspace_targets.h"

#include "base/same_file.h"
#include "db/connection.h"
#include "db/schema.h"
#include "workspace/workspace.h"

#include <QFileInfo>

namespace workspace
{

namespace
{

// The folder of the dated ones, and the names of those that were kept beside the last one.
bool isOwn(const Workspace &workspace, const QString &name)
{
    const QString backup = QString::fromUtf16(db::backupFileName);
    const QString initial = QString::fromUtf16(db::initialFileName);
    const QFileInfo info(name);
    const QString folder = info.absolutePath();
    return base::isSameFile(name, workspace.inApplicationFolder(initial)) ||
           base::isSameFile(name, workspace.inApplicationFolder(backup)) ||
           base::isSameFile(folder, workspace.inApplicationFolder(QStringLiteral("Backup"))) ||
           (base::isSameFile(folder, workspace.applicationFolder()) &&
            info.fileName().startsWith(QFileInfo(backup).completeBaseName() + u' ', Qt::CaseInsensitive));
}

} // namespace

bool isDatabase(const Workspace &workspace, const QString &name)
{
    const QFileInfo info(name);
    const bool isCalledOne = info.suffix().compare(QStringLiteral("cdb"), Qt::CaseInsensitive) == 0;
    return (isCalledOne && info.exists()) || base::isSameFile(name, workspace.connection.fileName()) ||
           isOwn(workspace, name);
}

bool isPossibleTarget(const Workspace &workspace, const QString &name, const QString &current)
{
    const QFileInfo info(name);
    return !info.isDir() && QFileInfo(info.absolutePath()).isDir() && !base::isSameFile(name, current) &&
           !isOwn(workspace, name);
}

} // namespace workspace

#include "workspace/workspace_targets.h"

#include "base/same_file.h"
#include "db/connection.h"
#include "db/schema.h"
#include "workspace/backup_places.h"
#include "workspace/workspace.h"

#include <QFileInfo>

namespace workspace
{

namespace
{

bool isOwn(const Workspace &workspace, const QString &name)
{
    const QString initial = workspace.inApplicationFolder(QString::fromUtf16(db::initialFileName));
    return base::isSameFile(name, initial) || isAnyBackup(name, workspace.applicationFolder());
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

#include "workspace/workspace_targets.h"

#include "base/same_file.h"
#include "db/schema.h"
#include "workspace/workspace.h"

#include <QFileInfo>

#include <algorithm>

namespace workspace
{

bool isPossibleTarget(const Workspace &workspace, const QString &name, const QString &current)
{
    const QString reserved[] = {current,
                                workspace.inApplicationFolder(QString::fromUtf16(db::initialFileName)),
                                workspace.inApplicationFolder(QString::fromUtf16(db::backupFileName))};
    const QFileInfo info(name);
    return !info.isDir() && QFileInfo(info.absolutePath()).isDir() &&
           std::none_of(std::cbegin(reserved), std::cend(reserved),
                        [&name](const QString &other) { return base::isSameFile(name, other); });
}

} // namespace workspace

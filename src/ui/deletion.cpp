#include "ui/deletion.h"

#include "base/dated_name.h"
#include "db/care/backup.h"
#include "db/connection.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace ui
{

bool askToDeleteMany(QWidget *parent, workspace::Workspace &workspace, const QString &question,
                     const QString &what)
{
    const QString kept = base::datedName(workspace.connection.fileName(), u"削除前"_s, workspace.today());
    const QString remark = what + u"\n削除する前の内容は「%1」に残します。"_s.arg(QFileInfo(kept).fileName());
    if (!prompts::askCautiously(parent, question, remark))
        return false;
    const base::Status copied = runWithProgress(
        parent, u"削除する前の内容をコピーしています。"_s, [&](const base::Progress &progress) {
            return db::copyDatabase(workspace.connection, kept, progress);
        });
    if (!copied)
        prompts::inform(parent, copied.error().text + u"\n何も削除していません。"_s);
    return bool(copied);
}

} // namespace ui

#include "ui/table_export.h"

#include "ui/desktop.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui/screen.h"
#include "workspace/workspace_targets.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace ui
{

namespace
{

const QString filters =
    u"xls ﾌｧｲﾙ (*.xls);;xlsx ファイル (*.xlsx);;csv ファイル (*.csv);;すべてのファイル (*.*)"_s;

bool mayBeWritten(QWidget *parent, const QString &fileName, const TableExport &table)
{
    const auto *screen = qobject_cast<const Screen *>(parent);
    if (screen && workspace::isDatabase(screen->workspace(), fileName)) {
        prompts::inform(parent, messages::databaseTarget());
        return false;
    }
    if (const base::Status possible = table.check(fileName); !possible) {
        prompts::inform(parent, possible.error().text);
        return false;
    }
    return prompts::askToOverwrite(parent, fileName);
}

} // namespace

void exportTable(QWidget *parent, const TableExport &table)
{
    const QString proposal =
        table.title.isEmpty() ? QString() : file_dialogs::proposedFile(table.title, u"xls"_s);
    const QString fileName =
        file_dialogs::saveFile(parent, u"名前を付けて保存"_s, filters, u"xls"_s, proposal);
    if (fileName.isEmpty() || !mayBeWritten(parent, fileName, table))
        return;
    const base::Status written =
        runWithProgress(parent, u"書き出しています。"_s,
                        [&](const base::Progress &progress) { return table.write(fileName, progress); });
    if (!written) {
        if (!written.error().cancelled)
            prompts::inform(parent, written.error().text);
    } else if (!desktop::openFile(fileName)) {
        prompts::inform(parent,
                        u"ファイルを書き出しました。開くプログラムが見つからないため、開いていません。\n"_s +
                            QDir::toNativeSeparators(fileName));
    }
}

} // namespace ui

#include "old_file.h"

#include "app/main_window/frmAMain.h"
#include "db/connection.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

#include <QAction>
#include <QDialog>
#include <QFile>

using namespace Qt::StringLiterals;

namespace tour
{

void convertOldFile(Walker &walker, workspace::Workspace &workspace, app::frmAMain &window,
                    const QDir &folder)
{
    const QString shop = workspace.connection.fileName();
    const QString old = folder.absoluteFilePath(u"以前の店.cdb"_s);
    const QString converted = folder.absoluteFilePath(u"以前の店_新形式.cdb"_s);
    walker.check(QFile::copy(QStringLiteral(LEGACY_FILE), old), u"no old file"_s);
    auto &open = walker.on(window).the<QAction>(u"mnuOpen"_s);

    ui::file_dialogs::expectFile(old);
    ui::prompts::expectAsk({}, true);
    ui::file_dialogs::expectFile(converted);
    walker.visit(
        u"conversion"_s, [&open] { open.trigger(); },
        [&walker](QDialog &screen) {
            walker.picture(screen, u"conversion"_s);
            walker.on(screen).press(u"cmdClose"_s);
        });
    walker.check(workspace.connection.fileName() == converted,
                 u"the converted file is not the current one"_s);
    const auto lines = workspace.connection.select(u"SELECT count(*) FROM 入出庫サブ"_s);
    walker.check(lines && lines->rows.front().front().toInt() == 2062, u"lines are missing"_s);
    walker.visit(
        u"customers of the old file"_s, [&] { walker.on(window).press(u"Command29"_s); },
        [&walker](QDialog &screen) { walker.picture(screen, u"customers-converted"_s); });

    ui::file_dialogs::expectFile(shop);
    open.trigger();
    walker.check(workspace.connection.fileName() == shop, u"the shop's file is not open again"_s);
}

} // namespace tour

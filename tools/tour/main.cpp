// Walks the whole program as a user would, on a fresh folder: tour DIR. Pictures of the screens and the
// printed notes end in DIR. Exits with 1 when anything was not as it should be.
#include "addresses.h"
#include "bill_list.h"
#include "bills.h"
#include "carriers.h"
#include "day_reports.h"
#include "first_day.h"
#include "food_day.h"
#include "gifts.h"
#include "ledgers.h"
#include "old_file.h"
#include "parcel_history.h"
#include "parcels.h"
#include "printers.h"
#include "purchases.h"
#include "receipts.h"
#include "shipping_slips.h"
#include "trade_day.h"

#include "app/files/application_folder.h"
#include "app/main_window/appearance.h"
#include "app/main_window/frmAMain.h"
#include "app/main_window/parcels.h"
#include "app/main_window/screens.h"
#include "db/connection.h"
#include "db/schema.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace
{

/// The screen of a small shop's notebook, without a display: its description goes into \a folder.
void useScreen(const QTemporaryDir &folder)
{
    QFile description(folder.filePath(u"screen.json"_s));
    if (!description.open(QIODevice::WriteOnly))
        return;
    description.write(R"({"screens": [{"name": "notebook", "x": 0, "y": 0, "width": 1366, "height": 768,
                          "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(description.fileName()));
}

/// \a folder emptied of what an earlier tour left there; nothing else is touched.
bool prepare(QDir &folder)
{
    const QString mark = u".kanbalore-tour"_s;
    if (folder.exists() && !folder.isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden)) {
        if (!folder.exists(mark))
            return false;
        folder.removeRecursively();
    }
    QFile marked(folder.filePath(mark));
    return folder.mkpath(u"."_s) && marked.open(QIODevice::WriteOnly);
}

QStringList walk(const QDir &folder)
{
    workspace::Settings settings(folder.filePath(u"settings.ini"_s));
    db::Connection connection;
    app::FolderPlaces places = app::FolderPlaces::ofThisMachine(folder.filePath(u"data"_s));
    const app::ApplicationFolder applicationFolder = app::settleApplicationFolder(places);
    const QDateTime morning(QDate(2026, 4, 1), QTime(9, 0));
    workspace::Workspace workspace(connection, settings, applicationFolder.path,
                                   [morning] { return morning; });
    tour::Walker walker(folder);
    walker.check(applicationFolder.problem.isEmpty(), applicationFolder.problem);

    app::frmAMain window(workspace, app::screenOpeners());
    window.resize(1366, 768);
    ui::prompts::expectInform(
        u"現在、初期設定用のファイルが選択されていますので、新規にデータベースを作成します。"_s);
    ui::file_dialogs::expectFile(folder.absoluteFilePath(u"shop.cdb"_s));
    window.load({});
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        walker.check(false, u"the main window does not become active"_s);
    tour::FirstDay(walker, workspace, window, folder).run();
    tour::tradeForADay(walker, workspace, window, folder);
    tour::buyAndList(walker, window, folder);
    tour::lookIntoLedgers(walker, window, folder);
    tour::lookIntoDayReports(walker, window, folder);
    tour::issueBill(walker, window, folder);
    tour::issueAllBills(walker, window, folder);
    tour::lookIntoBillList(walker, window, folder);
    tour::sellFood(walker, workspace, window, folder);
    tour::sendGifts(walker, workspace, window, folder);
    tour::lookAtPayments(walker, window, folder);
    tour::handToCarriers(walker, workspace, window, folder);
    tour::addressCustomers(walker, window, folder);
    tour::setPrintersUp(walker, workspace, window);
    tour::lookAtSlips(walker, workspace, folder);
    tour::sendParcels(walker, workspace, window);
    app::joinParcels(window, workspace);
    tour::lookIntoParcels(walker, workspace, window);
    tour::convertOldFile(walker, workspace, window, folder);
    window.close();
    const QString backup = workspace.inApplicationFolder(QString::fromUtf16(db::backupFileName));
    walker.check(QFile::exists(backup), u"there is no backup"_s);
    connection.close();
    walker.check(bool(connection.open(backup)), u"the backup cannot be opened"_s);
    return walker.troubles();
}

} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir screen;
    useScreen(screen);
    QApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(KANBALORE_VERSION));
    QTextStream out(stdout);
    if (QCoreApplication::arguments().size() != 2 || QCoreApplication::arguments().at(1).startsWith(u'-')) {
        out << "usage: tour DIR\n";
        return 2;
    }
    app::setUpAppearance(application);
    ui::prompts::beginScript();
    ui::file_dialogs::beginScript();
    QDir folder(QCoreApplication::arguments().at(1));
    if (!prepare(folder)) {
        out << folder.path() << ": not empty, and not left by an earlier tour\n";
        return 2;
    }
    const QStringList troubles = walk(folder);
    for (const QString &trouble : troubles)
        out << trouble << '\n';
    out << (troubles.isEmpty() ? "The tour went well.\n" : "The tour met trouble.\n");
    return troubles.isEmpty() ? 0 : 1;
}

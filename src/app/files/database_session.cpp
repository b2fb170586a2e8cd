#include "app/files/database_session.h"

#include "app/files/backups.h"
#include "app/files/database_files.h"
#include "app/files/old_file_opening.h"
#include "db/care/backup.h"
#include "db/connection.h"
#include "db/migrations.h"
#include "db/schema.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"
#include "workspace/workspace_targets.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

// Where people keep their files; the name is theirs to give.
QString proposedFolder()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

} // namespace

DatabaseSession::DatabaseSession(workspace::Workspace &workspace, QWidget &window)
    : QObject(&window)
    , m_workspace(workspace)
    , m_window(window)
{}

bool DatabaseSession::isOpen() const { return m_workspace.connection.isOpen(); }

bool DatabaseSession::isInitial() const { return isInitialFile(m_fileName, m_workspace.applicationFolder()); }

bool DatabaseSession::hasFile() const { return !isInitial() && QFileInfo(m_fileName).isFile(); }

QString DatabaseSession::reason() const
{
    if (isOpen() && isInitial())
        return u"初期設定用のファイルでは作業できません。"
               "「ファイル」「新規作成」でデータベースを作成してください。"_s;
    return m_reason;
}

void DatabaseSession::start(const QString &fileName)
{
    const QString openable = openableFile(&m_window, fileName, m_workspace.applicationFolder());
    if (!openable.isEmpty() && openable != fileName) {
        switchTo(openable);
        return;
    }
    m_fileName = fileName;
    if (!connectTo(fileName))
        ui::prompts::inform(&m_window, u"データベースの接続に失敗しました。ファイル名を変更してください。"_s);
    emit changed();
}

bool DatabaseSession::connectTo(const QString &fileName)
{
    const base::Status upToDate = db::migrate(fileName, m_workspace.today());
    const base::Status opened = upToDate ? m_workspace.connection.open(fileName) : upToDate;
    m_reason = opened ? QString() : opened.error().text;
    return bool(opened);
}

void DatabaseSession::close()
{
    m_workspace.connection.close();
    m_reason.clear();
    emit closed();
}

void DatabaseSession::reopen()
{
    (void)connectTo(m_fileName); // the reason stands in the window
    emit changed();
}

void DatabaseSession::switchTo(const QString &fileName)
{
    m_fileName = fileName;
    if (fileName.isEmpty()) {
        ui::prompts::inform(&m_window, u"データベースファイル名が入力されていません。"_s);
        return;
    }
    m_workspace.settings.write(workspace::keys::mdbFileName, fileName);
    m_workspace.settings.flush();
    if (!connectTo(fileName))
        ui::prompts::inform(&m_window, ui::messages::databaseNotUsable(), u"Kanbalore"_s);
    emit changed();
}

void DatabaseSession::createNew()
{
    const QString chosen = askForTarget(u"新しいファイル名"_s);
    if (chosen.isEmpty())
        return;
    close();
    if (const base::Status made = makeFromInitialFile(chosen, m_workspace.applicationFolder()); !made) {
        m_reason = made.error().text;
        ui::prompts::inform(&m_window, m_reason);
        emit changed();
        return;
    }
    switchTo(chosen);
}

QString DatabaseSession::askForTarget(const QString &title)
{
    const bool isNew = title == u"新しいファイル名"_s;
    const QString chosen =
        ui::file_dialogs::saveFile(&m_window, title, databaseFileFilters(), u"cdb"_s, proposedFolder());
    if (chosen.isEmpty())
        return {};
    // A new file may take the place of the current one; a copy of it cannot.
    if (!workspace::isPossibleTarget(m_workspace, chosen, isNew ? QString() : m_fileName)) {
        ui::prompts::inform(&m_window, u"ファイル名が不正です。"_s);
        return {};
    }
    return ui::prompts::askToOverwrite(&m_window, chosen) ? QFileInfo(chosen).absoluteFilePath() : QString();
}

// The copy is SQLite's own, so that it is whole also while another program writes to the file. As with a new
// file, a failure leaves nothing open: the name in the window is that of the file that is still there.
void DatabaseSession::saveAs()
{
    if (!isOpen())
        return;
    const QString chosen = askForTarget(u"名前を付けて保存"_s);
    if (chosen.isEmpty())
        return;
    close();
    const base::Status copied = ui::runWithProgress(
        &m_window, u"データベースをコピーしています。"_s,
        [&](const base::Progress &progress) { return db::copyDatabase(m_fileName, chosen, progress); });
    if (copied) {
        switchTo(chosen);
        return;
    }
    if (copied.error().cancelled) {
        reopen();
        return;
    }
    m_reason = copied.error().text;
    ui::prompts::inform(&m_window, m_reason);
    emit changed();
}

void DatabaseSession::openOther()
{
    const QString chosen =
        ui::file_dialogs::openFile(&m_window, u"データベースの変更"_s, databaseFileFilters());
    if (chosen.isEmpty())
        return;
    if (isInitialFile(chosen, m_workspace.applicationFolder())) {
        leaveInitialFile();
        return;
    }
    openInstead(chosen);
}

void DatabaseSession::openBackup()
{
    openInstead(m_workspace.inApplicationFolder(QString::fromUtf16(db::backupFileName)));
}

// One of the earlier program is converted first; nothing is closed when the user gives up.
void DatabaseSession::openInstead(const QString &chosen)
{
    // The file that is open is none of the old ones, and looking into it would take its locks away.
    const QString openable = isOpen() && isSameFile(chosen, m_fileName)
                                 ? chosen
                                 : openableFile(&m_window, chosen, m_workspace.applicationFolder());
    if (openable.isEmpty())
        return;
    close();
    switchTo(QFileInfo(openable).absoluteFilePath());
}

void DatabaseSession::leaveInitialFile()
{
    ui::prompts::inform(&m_window, u"現在、初期設定用のファイルが選択されていますので、"
                                   "新規にデータベースを作成します。"_s);
    createNew();
}

void DatabaseSession::backUp()
{
    if (!isOpen())
        return;
    const QString folder = m_workspace.applicationFolder();
    const QDate today = m_workspace.today();
    const auto bothCopies = [&](const base::Progress &progress) -> base::Status {
        const base::Status last = backUpAtExit(m_workspace.connection, m_fileName, folder, progress);
        if (isInitial() || (!last && last.error().cancelled))
            return last;
        const base::Status dated = backUpDated(m_workspace.connection, folder, today, progress);
        return last ? dated : last;
    };
    const base::Status done = ui::runWithProgress(&m_window, u"バックアップを作成しています。"_s, bothCopies);
    // Stopped by someone who has no time: the earlier backups are still there.
    if (!done && !done.error().cancelled)
        ui::prompts::inform(&m_window, u"データベースのバックアップに失敗しました。"_s);
}

} // namespace app

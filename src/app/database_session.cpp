#include "app/database_session.h"

#include "app/database_files.h"
#include "app/old_file_opening.h"
#include "app/settings.h"
#include "app/workspace.h"
#include "db/connection.h"
#include "db/schema.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

const QString fileFilters = u"すべてのファイル (*.*);;cdb ﾌｧｲﾙ (*.cdb)"_s;

// Where people keep their files; the name is theirs to give.
QString proposedFolder()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

} // namespace

DatabaseSession::DatabaseSession(Workspace &workspace, QWidget &window)
    : QObject(&window)
    , m_workspace(workspace)
    , m_window(window)
{}

bool DatabaseSession::isOpen() const { return m_workspace.connection.isOpen(); }

bool DatabaseSession::isInitial() const { return isInitialFile(m_fileName, m_workspace.applicationFolder()); }

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
    const db::Status opened = m_workspace.connection.open(fileName);
    m_reason = opened ? QString() : opened.error().text;
    return bool(opened);
}

void DatabaseSession::close()
{
    m_workspace.connection.close();
    m_reason.clear();
    emit closed();
}

void DatabaseSession::switchTo(const QString &fileName)
{
    m_fileName = fileName;
    if (fileName.isEmpty()) {
        ui::prompts::inform(&m_window, u"データベースファイル名が入力されていません。"_s);
        return;
    }
    m_workspace.settings.write(keys::mdbFileName, fileName);
    m_workspace.settings.flush();
    if (!connectTo(fileName))
        ui::prompts::inform(&m_window, ui::messages::databaseNotUsable(), u"Kanbalore"_s);
    emit changed();
}

void DatabaseSession::createNew()
{
    const QString chosen =
        ui::file_dialogs::saveFile(&m_window, u"新しいファイル名"_s, fileFilters, u"cdb"_s, proposedFolder());
    if (chosen.isEmpty())
        return;
    const QString folder = m_workspace.applicationFolder();
    if (isInitialFile(chosen, folder)) {
        ui::prompts::inform(&m_window, u"ファイル名が不正です。"_s);
        return;
    }
    if (QFileInfo::exists(chosen) &&
        !ui::prompts::ask(&m_window, u"指定した名前のファイルが存在します。\n上書きしますか？"_s))
        return;
    close();
    if (const db::Status made = makeFromInitialFile(chosen, folder); !made) {
        m_reason = made.error().text;
        ui::prompts::inform(&m_window, m_reason);
        emit changed();
        return;
    }
    switchTo(QFileInfo(chosen).absoluteFilePath());
}

void DatabaseSession::openOther()
{
    const QString chosen = ui::file_dialogs::openFile(&m_window, u"データベースの変更"_s, fileFilters);
    if (chosen.isEmpty())
        return;
    if (isInitialFile(chosen, m_workspace.applicationFolder())) {
        leaveInitialFile();
        return;
    }
    // The file that is open is none of the old ones, and looking into it would take its locks away.
    const QString openable = isOpen() && isSameFile(chosen, m_fileName)
                                 ? chosen
                                 : openableFile(&m_window, chosen, m_workspace.applicationFolder());
    if (openable.isEmpty())
        return;
    close();
    switchTo(QFileInfo(openable).absoluteFilePath());
}

void DatabaseSession::openBackup()
{
    close();
    switchTo(m_workspace.inApplicationFolder(QString::fromUtf16(db::backupFileName)));
}

void DatabaseSession::leaveInitialFile()
{
    ui::prompts::inform(&m_window, u"現在、初期設定用のファイルが選択されていますので、"
                                   "新規にデータベースを作成します。"_s);
    createNew();
}

void DatabaseSession::backUp()
{
    const db::Status copied =
        backUpAtExit(m_workspace.connection, m_fileName, m_workspace.applicationFolder());
    if (!copied)
        ui::prompts::inform(&m_window, u"データベースのバックアップに失敗しました。"_s);
}

} // namespace app

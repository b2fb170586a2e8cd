#include "app/files/database_session.h"

#include "app/files/backups.h"
#include "app/files/database_files.h"
#include "app/files/old_file_opening.h"
#include "app/files/opened_backups.h"
#include "app/files/recent_files.h"
#include "app/files/shop_documents.h"
#include "base/dated_name.h"
#include "base/file_rights.h"
#include "db/care/backup.h"
#include "db/connection.h"
#include "db/file_header.h"
#include "db/migrations.h"
#include "db/old_files/old_file.h"
#include "db/schema.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "workspace/backup_places.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"
#include "workspace/workspace_targets.h"

#include <QDir>
#include <QElapsedTimer>
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

// Whatever can be seen without opening it.
base::Status mayBeOpened(const QString &fileName)
{
    const int version = db::storedVersion(fileName);
    return version > 0 && version <= db::schemaVersion ? base::Status() : db::checkHeader(fileName);
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
    if (isToBeCopied(fileName)) {
        openCopyOfBackup(fileName);
        // The backup itself is never taken for the shop's file.
        if (!isOpen())
            m_reason = u"バックアップ「%1」の写しを開けませんでした。"_s.arg(QFileInfo(fileName).fileName());
        emit changed();
        return;
    }
    m_fileName = fileName;
    if (!connectTo(fileName))
        ui::prompts::inform(&m_window, u"データベースの接続に失敗しました。ファイル名を変更してください。"_s,
                            QString::fromUtf16(ui::prompts::information), ui::prompts::Icon::Information,
                            reasonAndWaysOut());
    else if (!isInitial())
        rememberFile(m_workspace.settings, fileName);
    emit changed();
}

// What happened, and what can be done in the window that comes.
QString DatabaseSession::reasonAndWaysOut() const
{
    const bool canBeRepaired = hasFile() && db::foreignKindOf(m_fileName).isEmpty() &&
                               db::oldFormatOf(m_fileName) == db::OldFormat::None;
    const QString other = u"「ファイル」「開く」で別のファイルを選ぶか、「バックアップの一覧」から"
                          "バックアップを開いてください。"_s;
    return m_fileName + u'\n' + m_reason + u"\n\n"_s +
           (canBeRepaired ? u"「環境設定」の「データベースの修復/最適化」で修復するか、"_s : QString()) +
           other;
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
    if (fileName.isEmpty()) {
        m_fileName.clear();
        ui::prompts::inform(&m_window, u"データベースファイル名が入力されていません。"_s);
        return;
    }
    const bool isCurrent = isOpen() && isSameFile(fileName, m_fileName);
    if (const base::Status possible = isCurrent ? base::Status() : mayBeOpened(fileName); !possible) {
        refuse(fileName, possible.error().text);
        return;
    }
    backUpOnLeaving();
    const QString left = m_fileName;
    if (!goTo(fileName))
        refuse(fileName, m_refused);
    else if (!isCurrent)
        tellOfCopy(left);
}

// One that was only looked into is not worth a word.
void DatabaseSession::tellOfCopy(const QString &left)
{
    switch (leaveCopy(left, m_workspace.applicationFolder())) {
    case LeftCopy::None:
        break;
    case LeftCopy::Cleared:
        forgetFile(m_workspace.settings, left);
        emit changed();
        break;
    case LeftCopy::Kept:
        ui::prompts::inform(&m_window, u"バックアップの写しで行った作業は、次のファイルに残っています。"_s,
                            QString::fromUtf16(ui::prompts::information), ui::prompts::Icon::Information,
                            left);
    }
}

// On failure the file of before is open again.
bool DatabaseSession::goTo(const QString &fileName)
{
    const bool wasOpen = isOpen();
    const QString reasonBefore = m_reason;
    close();
    const bool opened = connectTo(fileName);
    if (opened) {
        m_fileName = fileName;
        m_workspace.settings.write(workspace::keys::mdbFileName, fileName);
        rememberFile(m_workspace.settings, fileName);
        m_workspace.settings.flush();
    } else {
        m_refused = std::exchange(m_reason, reasonBefore);
        if (wasOpen)
            (void)connectTo(m_fileName);
    }
    emit changed();
    return opened;
}

// A damaged file has to be the current one to be repaired; it is not the one to start with for that.
void DatabaseSession::refuse(const QString &fileName, const QString &why)
{
    ui::prompts::inform(&m_window, ui::messages::databaseNotUsable(), u"Kanbalore"_s,
                        ui::prompts::Icon::Information, why);
    // There is nothing to repair in what never was a database.
    if (!QFileInfo(fileName).isFile() || isSameFile(fileName, m_fileName) ||
        !db::foreignKindOf(fileName).isEmpty() || db::storedVersion(fileName) > db::schemaVersion)
        return;
    if (!ui::prompts::askCautiously(
            &m_window,
            u"「%1」を、修復または再作成するために選びますか？"_s.arg(QFileInfo(fileName).fileName()),
            u"今のデータベースは閉じます。次に起動するときは、また今のデータベースを開きます。"_s))
        return;
    backUpOnLeaving();
    close();
    const QString left = std::exchange(m_fileName, fileName);
    m_reason = why;
    emit changed();
    tellOfCopy(left);
}

void DatabaseSession::createNew()
{
    const QString chosen = askForTarget(u"新しいファイル名"_s);
    if (chosen.isEmpty())
        return;
    // Neither can stay open: the one is copied, the other replaced.
    if (isInitial() || isSameFile(chosen, m_fileName)) {
        backUpOnLeaving();
        close();
    }
    const base::Status made =
        makeFromInitialFile(chosen, m_workspace.applicationFolder(), keptNameOf(chosen));
    if (made) {
        switchTo(chosen);
        return;
    }
    if (!isOpen())
        reopen();
    ui::prompts::inform(&m_window, made.error().text);
}

QString DatabaseSession::keptNameOf(const QString &fileName) const
{
    return QFileInfo::exists(fileName) ? base::datedName(fileName, u"上書き前"_s, m_workspace.today())
                                       : QString();
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
    return ui::prompts::askToOverwrite(&m_window, chosen, keptNameOf(chosen))
               ? QFileInfo(chosen).absoluteFilePath()
               : QString();
}

// The copy is SQLite's own, so that it is whole also while another program writes to the file. Until it is
// complete the file stays open.
void DatabaseSession::saveAs()
{
    // A disk that was full may have kept it from being opened again.
    if (!isOpen() && hasFile())
        reopen();
    if (!isOpen())
        return;
    const QString chosen = askForTarget(u"名前を付けて保存"_s);
    if (chosen.isEmpty())
        return;
    const QString kept = keptNameOf(chosen);
    QString aboutDocuments;
    const base::Status copied = ui::runWithProgress(
        &m_window, u"データベースをコピーしています。"_s, [&](const base::Progress &progress) {
            base::Status done = db::copyDatabase(m_workspace.connection, chosen, progress,
                                                 kept.isEmpty() ? db::Replacing() : db::keptAs(kept));
            if (done)
                aboutDocuments = takeDocumentsAlong(m_workspace.connection, m_fileName, chosen,
                                                    m_workspace.applicationFolder(), progress);
            return done;
        });
    if (!aboutDocuments.isEmpty())
        ui::prompts::inform(&m_window, aboutDocuments);
    if (copied)
        switchTo(chosen);
    else if (!copied.error().cancelled)
        ui::prompts::inform(&m_window, copied.error().text);
}

void DatabaseSession::openOther()
{
    const QString folder = m_fileName.isEmpty() ? proposedFolder() : QFileInfo(m_fileName).absolutePath();
    const QString chosen =
        ui::file_dialogs::openFile(&m_window, u"データベースの変更"_s, databaseFileFilters(), folder);
    if (!chosen.isEmpty())
        openRecent(chosen);
}

void DatabaseSession::openRecent(const QString &fileName)
{
    if (isInitialFile(fileName, m_workspace.applicationFolder()))
        leaveInitialFile();
    else if (isToBeCopied(fileName))
        openCopyOfBackup(fileName);
    else
        openInstead(fileName);
}

// One of the old format is left as it is by its conversion. The file that is open must not be looked into.
bool DatabaseSession::isToBeCopied(const QString &fileName) const
{
    return workspace::isStoredBackup(fileName, m_workspace.applicationFolder()) &&
           QFileInfo(fileName).isFile() && !(isOpen() && isSameFile(fileName, m_fileName)) &&
           db::oldFormatOf(fileName) == db::OldFormat::None;
}

void DatabaseSession::openBackup() { openInstead(workspace::backupFileIn(m_workspace.applicationFolder())); }

bool DatabaseSession::isBackup() const
{
    return isOpen() && workspace::isAnyBackup(m_fileName, m_workspace.applicationFolder());
}

// What is worked in is not to be cleared away as an old backup, nor to be replaced by the next one.
void DatabaseSession::openCopyOfBackup(const QString &fileName)
{
    const QString folder = workspace::openedBackupsIn(m_workspace.applicationFolder());
    const QString copy =
        base::datedName(folder + u'/' + QFileInfo(fileName).fileName(), u"写し"_s, m_workspace.today());
    const base::Status copied = ui::runWithProgress(
        &m_window, u"バックアップをコピーしています。"_s,
        [&](const base::Progress &progress) -> base::Status {
            if (!base::makeSharedFolder(workspace::backupFolderIn(m_workspace.applicationFolder())) ||
                !base::makeSharedFolder(folder))
                return base::Error{u"フォルダ「"_s + folder + u"」を作成できませんでした。"_s};
            const base::Status made = isSameFile(fileName, m_fileName) && isOpen()
                                          ? db::copyDatabase(m_workspace.connection, copy, progress)
                                          : db::copyDatabase(fileName, copy, progress);
            return made ? readyToBeOpened(copy, m_workspace.today()) : made;
        });
    if (!copied) {
        if (!copied.error().cancelled)
            ui::prompts::inform(&m_window, copied.error().text);
        return;
    }
    switchTo(copy);
    if (!isSameFile(copy, m_fileName))
        (void)leaveCopy(copy, m_workspace.applicationFolder());
}

// One of the earlier program is converted first; nothing is closed when the user gives up.
void DatabaseSession::openInstead(const QString &chosen)
{
    // The file that is open is none of the old ones, and looking into it would take its locks away.
    const QString openable = isOpen() && isSameFile(chosen, m_fileName)
                                 ? chosen
                                 : openableFile(&m_window, chosen, m_workspace.applicationFolder());
    if (!openable.isEmpty())
        switchTo(QFileInfo(openable).absoluteFilePath());
}

void DatabaseSession::leaveInitialFile()
{
    ui::prompts::inform(&m_window, u"現在、初期設定用のファイルが選択されていますので、"
                                   "新規にデータベースを作成します。"_s);
    createNew();
}

base::Result<BackedUp> DatabaseSession::bothBackups(const base::Progress &progress)
{
    return backUpWholly(m_workspace.connection, m_workspace.applicationFolder(), m_workspace.today(),
                        progress);
}

void DatabaseSession::backUp()
{
    if (!isOpen())
        return;
    (void)tellOfBackup(
        ui::runWithProgress(&m_window, u"バックアップを作成しています。"_s,
                            [this](const base::Progress &progress) { return bothBackups(progress); }));
}

void DatabaseSession::backUpNow()
{
    if (!isUsable())
        return;
    const auto done =
        ui::runWithProgress(&m_window, u"バックアップを作成しています。"_s,
                            [this](const base::Progress &progress) { return bothBackups(progress); });
    if (tellOfBackup(done))
        ui::prompts::inform(&m_window, u"バックアップを作成しました。"_s,
                            QString::fromUtf16(ui::prompts::information), ui::prompts::Icon::Information,
                            workspace::backupFolderIn(m_workspace.applicationFolder()));
}

// What is under way is taken back; nothing of it goes on.
void DatabaseSession::backUpSilently()
{
    constexpr qint64 timeLeft = 1500; // ms, until the operating system loses its patience
    if (!isOpen())
        return;
    if (m_workspace.connection.inTransaction())
        (void)m_workspace.connection.execute(u"ROLLBACK"_s);
    QElapsedTimer time;
    time.start();
    (void)bothBackups([&time](qint64, qint64) { return time.elapsed() < timeLeft; });
}

// Only the day's: the other one may be what is about to be opened.
void DatabaseSession::backUpOnLeaving()
{
    if (!isUsable())
        return;
    (void)tellOfBackup(ui::runWithProgress(
        &m_window, u"バックアップを作成しています。"_s, [this](const base::Progress &progress) {
            return backUpDay(m_workspace.connection, m_workspace.applicationFolder(), m_workspace.today(),
                             progress);
        }));
}

// Stopped by someone who has no time: the earlier backups are still there.
bool DatabaseSession::tellOfBackup(const base::Result<BackedUp> &done)
{
    if (!done) {
        if (!done.error().cancelled)
            ui::prompts::inform(&m_window, u"データベースのバックアップに失敗しました。"_s,
                                QString::fromUtf16(ui::prompts::information), ui::prompts::Icon::Information,
                                done.error().text);
        return false;
    }
    if (!done->aside.isEmpty())
        ui::prompts::inform(&m_window,
                            u"今日より後の日付のバックアップが %1 個ありました。"
                            "名前を変えて残しました。\n"
                            "コンピュータの日付が正しいか確かめてください。"_s.arg(done->aside.size()));
    if (!done->aboutDocuments.isEmpty())
        ui::prompts::inform(&m_window, done->aboutDocuments);
    return true;
}

} // namespace app

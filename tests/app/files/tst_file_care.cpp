#include "support/scripted_test.h"

#include "app/shop_window.h"

#include "app/files/application_folder.h"
#include "app/files/backup_list.h"
#include "app/files/backups.h"
#include "app/main_window/companions.h"
#include "base/dated_name.h"
#include "db/care/file_repair.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "workspace/workspace_targets.h"

#include <QComboBox>
#include <QDirIterator>
#include <QFrame>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <sys/stat.h>
#include <thread>

using namespace Qt::StringLiterals;
using namespace app;

namespace
{

void write(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(fileName));
}

int customersIn(const QString &fileName)
{
    db::PlainHandle file;
    if (!file.open(fileName))
        return -1;
    const auto count = file.number("SELECT count(*) FROM 納品先");
    return count ? int(*count) : -1;
}

void change(const QString &fileName, const QByteArray &sql)
{
    db::PlainHandle file;
    if (!file.open(fileName) || !file.run(sql))
        qFatal("cannot change %s", qPrintable(fileName));
}

// The clerk's hands at the next start and end of the program.
void openAndClose(Stage &stage, const QString &fileName)
{
    stage.file = fileName;
    stage.load();
    QVERIFY(stage.window->close());
    stage.window.reset();
    stage.shop.connection.close();
}

} // namespace

/// What is not to be lost when files are opened, left, replaced and backed up.
class TestFileCare : public ScriptedTest
{
    Q_OBJECT

private slots:
    void initialFileIsNoBackup();
    void backupOfAnotherFileIsKept();
    void workInABackupIsKept();
    void emptiedFileKeepsItsBackups();
    void unchangedFileKeepsNothing();
    void olderVersionIsListed();
    void leavingMakesABackup_data();
    void leavingMakesABackup();
    void listOpensACopy();
    void wrongChoices_data();
    void wrongChoices();
    void damagedFileCanBeChosenForRepair();
    void recentFiles();
    void emptyingKeepsACopy();
    void backUpNow();
    void twoCompactionsInOneFolder();
    void restoringHoldsTheFile();
    void restoringThroughALink();
    void clockThatWasWrong();
    void failedSaveAsStays();
    void overwrittenDatabaseIsKept();
    void papersAreNoDatabases();
    void killedProgramBacksUp_data();
    void killedProgramBacksUp();
    void twoFirstStarts();
    void companionsOfStrangers_data();
    void companionsOfStrangers();
};

void TestFileCare::initialFileIsNoBackup()
{
    Stage stage;
    const QString backup = stage.shop.path(u"BackupKanbalore.cdb"_s);
    QVERIFY(QFile::copy(stage.file, backup));
    ui::prompts::expectInform({});
    ui::file_dialogs::expectFile({});
    stage.file = stage.shop.path(u"Kanbalore.cdb"_s);
    stage.load();
    QTRY_VERIFY(stage.window->isActiveWindow());
    QTest::qWait(50);
    QVERIFY(stage.window->close());
    QCOMPARE(customersIn(backup), 300);
    QCOMPARE(stage.files(u"BackupKanbalore*.cdb"_s).size(), 1);
}

void TestFileCare::backupOfAnotherFileIsKept()
{
    Stage stage;
    const QString other = stage.shop.path(u"other.cdb"_s);
    QVERIFY(db::createDatabase(other));
    openAndClose(stage, stage.file);
    openAndClose(stage, other);
    QCOMPARE(customersIn(stage.shop.path(u"BackupKanbalore.cdb"_s)), 0);
    QCOMPARE(customersIn(stage.shop.path(u"BackupKanbalore 別のファイル 2026-04-01.cdb"_s)), 300);
    // Two files in turns do not fill the disk.
    for (int i = 0; i < 2 * daysKept; ++i)
        openAndClose(stage, stage.shop.path(i % 2 ? u"other.cdb"_s : u"shop.cdb"_s));
    QCOMPARE(stage.files(u"BackupKanbalore 別のファイル*.cdb"_s).size(), daysKept);
}

void TestFileCare::workInABackupIsKept()
{
    Stage stage;
    const QString backup = stage.shop.path(u"BackupKanbalore.cdb"_s);
    openAndClose(stage, stage.file);
    change(backup, "INSERT INTO 単位 (単位ID, 単位) VALUES (1, '箱')");
    openAndClose(stage, stage.file);
    const QStringList kept = stage.files(u"BackupKanbalore 変更あり*.cdb"_s);
    QCOMPARE(kept.size(), 1);
    QVERIFY(stage.shop.connection.open(stage.shop.path(kept.front())));
    QCOMPARE(stage.shop.value(u"SELECT 単位 FROM 単位"_s).toString(), u"箱"_s);
}

// On the first day both backups are of that day.
void TestFileCare::emptiedFileKeepsItsBackups()
{
    Stage stage;
    openAndClose(stage, stage.file);
    change(stage.file, "DELETE FROM 納品先 WHERE 納品先ID > 200");
    openAndClose(stage, stage.file);
    QCOMPARE(customersIn(stage.shop.path(u"BackupKanbalore.cdb"_s)), 200);
    QCOMPARE(customersIn(stage.shop.path(u"BackupKanbalore 削除前 2026-04-01.cdb"_s)), 300);
    const QDir folder(stage.shop.path(u"Backup"_s));
    QList<int> customers;
    const QStringList dated = folder.entryList({u"shop~* 2026-04-01*.cdb"_s}, QDir::Files, QDir::Name);
    for (const QString &name : dated)
        customers << customersIn(folder.filePath(name));
    std::sort(customers.begin(), customers.end());
    QCOMPARE(customers, (QList<int>{200, 300}));
    const auto listed = checkedBackups(stage.shop.folder.path(), base::unwatched);
    QCOMPARE(listed->size(), std::size_t(4));
}

void TestFileCare::unchangedFileKeepsNothing()
{
    Stage stage;
    for (int i = 0; i < 3; ++i) {
        change(stage.file, "DELETE FROM 納品先 WHERE 納品先ID = " + QByteArray::number(300 - i));
        openAndClose(stage, stage.file);
    }
    QCOMPARE(stage.files(u"BackupKanbalore*.cdb"_s).size(), 1);
    QCOMPARE(QDir(stage.shop.path(u"Backup"_s)).entryList({u"*.cdb"_s}, QDir::Files).size(), 1);
}

// Opening or restoring it brings it up to date.
void TestFileCare::olderVersionIsListed()
{
    Stage stage;
    const QString backup = stage.shop.path(u"BackupKanbalore.cdb"_s);
    QVERIFY(QFile::copy(stage.file, backup));
    change(backup, "PRAGMA user_version = 1");
    const auto listed = checkedBackups(stage.shop.folder.path(), base::unwatched);
    QCOMPARE(listed->size(), std::size_t(1));
    QVERIFY(listed->front().isSound);
    QCOMPARE(listed->front().customers, 300);
}

void TestFileCare::leavingMakesABackup_data()
{
    QTest::addColumn<QString>("command");
    for (const char *command : {"mnuOpen", "mnuNew", "mnuSave", "mnuBackupOpen"})
        QTest::newRow(command) << QString::fromLatin1(command);
}

void TestFileCare::leavingMakesABackup()
{
    QFETCH(QString, command);
    Stage stage;
    const QString backup = stage.shop.path(u"BackupKanbalore.cdb"_s);
    QVERIFY(db::createDatabase(stage.shop.path(u"other.cdb"_s)) && db::createDatabase(backup));
    stage.load();
    if (command != "mnuBackupOpen"_L1)
        ui::file_dialogs::expectFile(
            stage.shop.path(command == "mnuOpen"_L1 ? u"other.cdb"_s : u"new.cdb"_s));
    stage.choose(command.toLatin1().constData());
    QVERIFY(stage.shop.connection.fileName() != stage.file);
    const QDir folder(stage.shop.path(u"Backup"_s));
    const QStringList made = folder.entryList({u"shop~* 2026-04-01.cdb"_s});
    QCOMPARE(made.size(), 1);
    QCOMPARE(customersIn(folder.filePath(made.front())), 300);
    QCOMPARE(customersIn(backup), 0); // which may be the one that was to be opened
}

void TestFileCare::listOpensACopy()
{
    Stage stage;
    QVERIFY(stage.shop.connection.open(stage.file));
    QVERIFY(backUpDated(stage.shop.connection, stage.shop.folder.path(), QDate(2026, 3, 30)));
    stage.load();
    auto *notice = stage.find<QFrame>("fraBackup");
    QVERIFY(!notice->isVisible());
    const QString backup = QDir(stage.shop.path(u"Backup"_s)).entryInfoList({u"*.cdb"_s}).front().filePath();
    ui::file_dialogs::expectFile(backup); // as from the list
    stage.choose("mnuOpen");
    QVERIFY(stage.shop.connection.fileName() != backup);
    QVERIFY(notice->isVisible());
    stage.shop.run(u"DELETE FROM 納品先"_s);
    ui::file_dialogs::expectFile(stage.shop.path(u"saved.cdb"_s));
    stage.click("cmdSaveBackup");
    QCOMPARE(stage.shop.connection.fileName(), stage.shop.path(u"saved.cdb"_s));
    QVERIFY(!notice->isVisible());
    QCOMPARE(customersIn(backup), 300);
    // The prescribed command opens the backup itself; that is said all the same.
    QVERIFY(QFile::copy(stage.file, stage.shop.path(u"BackupKanbalore.cdb"_s)));
    stage.choose("mnuBackupOpen");
    QVERIFY(notice->isVisible());
}

void TestFileCare::wrongChoices_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no backup yet") << QString();
    QTest::newRow("gone") << u"gone.cdb"_s;
    QTest::newRow("text") << u"letter.txt"_s;
    QTest::newRow("damaged behind its header") << u"damaged.cdb"_s;
}

void TestFileCare::wrongChoices()
{
    QFETCH(QString, name);
    Stage stage;
    write(stage.shop.path(u"letter.txt"_s), "Dear Sir");
    QVERIFY(QFile::copy(stage.file, stage.shop.path(u"damaged.cdb"_s)));
    QFile::resize(stage.shop.path(u"damaged.cdb"_s), 2 * 4096);
    stage.load();
    ui::prompts::expectInform({});
    if (!name.isEmpty())
        ui::file_dialogs::expectFile(stage.shop.path(name));
    if (QFile::exists(stage.shop.path(name)) && !name.isEmpty())
        ui::prompts::expectAskCautiously({}, false);
    stage.choose(name.isEmpty() ? "mnuBackupOpen" : "mnuOpen");
    QCOMPARE(stage.shop.connection.fileName(), stage.file);
    QCOMPARE(stage.customers(), 300);
    QVERIFY(stage.shop.settings.text(workspace::keys::mdbFileName) != stage.shop.path(name));
    QCOMPARE(stage.find<QLineEdit>("txtFileName")->text(), stage.file);
    if (!name.isEmpty())
        QCOMPARE(ui::file_dialogs::lastFolder(), stage.shop.folder.path());
}

void TestFileCare::damagedFileCanBeChosenForRepair()
{
    Stage stage;
    const QString letter = stage.shop.path(u"letter.txt"_s);
    write(letter, "Dear Sir");
    stage.load();
    stage.shop.settings.write(workspace::keys::mdbFileName, stage.file);
    ui::prompts::expectInform({});
    ui::prompts::expectAskCautiously({}, true);
    ui::file_dialogs::expectFile(letter);
    stage.choose("mnuOpen");
    QVERIFY(!stage.shop.connection.isOpen());
    QCOMPARE(stage.find<QLineEdit>("txtFileName")->text(), letter);
    QVERIFY(stage.find<QPushButton>("Command22")->isEnabled());
    QCOMPARE(stage.shop.settings.text(workspace::keys::mdbFileName), stage.file);
}

void TestFileCare::recentFiles()
{
    Stage stage;
    stage.load();
    for (int i = 1; i <= 6; ++i) {
        const QString name = stage.shop.path(u"shop%1.cdb"_s.arg(i));
        QVERIFY(db::createDatabase(name));
        ui::file_dialogs::expectFile(name);
        stage.choose("mnuOpen");
    }
    const auto *menu = stage.find<QMenu>("mnuRecent");
    QCOMPARE(menu->actions().size(), 5);
    QCOMPARE(menu->actions().at(4)->text(), stage.shop.path(u"shop2.cdb"_s));
    menu->actions().at(4)->trigger();
    QTRY_COMPARE(stage.shop.connection.fileName(), stage.shop.path(u"shop2.cdb"_s));
    QCOMPARE(menu->actions().at(0)->text(), stage.shop.path(u"shop2.cdb"_s));
}

void TestFileCare::emptyingKeepsACopy()
{
    Stage stage;
    stage.load();
    stage.find<QComboBox>("Combo3")->setCurrentIndex(0);
    ui::prompts::expectAskCautiously(
        u"すべて選択 を削除します。よろしいですか？"_s, true,
        u"納品先情報：300 行\n社員：1 行\n伝票：300 行\n伝票の明細：300 行\n発送区分：1 行\n"
        "削除する前の内容は「shop 削除前 2026-04-01.cdb」に残します。"_s);
    ui::prompts::expectInform(u"すべて選択を削除しました。"_s);
    stage.click("Command58");
    QCOMPARE(stage.customers(), 0);
    QCOMPARE(customersIn(stage.shop.path(u"shop 削除前 2026-04-01.cdb"_s)), 300);
}

void TestFileCare::backUpNow()
{
    Stage stage;
    stage.load();
    ui::prompts::expectInform(u"バックアップを作成しました。"_s, stage.shop.path(u"Backup"_s));
    stage.choose("mnuBackupNow");
    QCOMPARE(customersIn(stage.shop.path(u"BackupKanbalore.cdb"_s)), 300);
    QCOMPARE(QDir(stage.shop.path(u"Backup"_s)).entryList({u"shop~*.cdb"_s}).size(), 1);
}

void TestFileCare::twoCompactionsInOneFolder()
{
    Stage stage;
    const QString other = stage.shop.path(u"other.cdb"_s);
    QVERIFY(db::createDatabase(other));
    db::FileRepair one(stage.file);
    db::FileRepair two(other);
    QVERIFY(one.begin() && two.begin());
    QVERIFY(one.compact(base::unwatched));
    QVERIFY(two.compact(base::unwatched));
    QVERIFY(one.finish({}));
    QVERIFY(two.finish({}));
    QCOMPARE(customersIn(stage.file), 300);
    QCOMPARE(customersIn(other), 0);
}

// A slip that a second program saved meanwhile would be in neither file.
void TestFileCare::restoringHoldsTheFile()
{
    Stage stage;
    const QString backup = stage.shop.path(u"backup.cdb"_s);
    const QString kept = stage.shop.path(u"kept.cdb"_s);
    QVERIFY(QFile::copy(stage.file, backup));
    db::Connection second;
    int refused = 0;
    const auto during = [&](qint64, qint64) {
        refused += second.open(stage.file) ? 0 : 1;
        return true;
    };
    QVERIFY(restoreBackup(backup, stage.file, kept, during));
    QVERIFY(refused > 0);
    QCOMPARE(customersIn(kept), 300);
    QVERIFY(second.open(stage.file));
    QVERIFY(!restoreBackup(backup, stage.file, kept, base::unwatched));
}

void TestFileCare::restoringThroughALink()
{
    Stage stage;
    const QString backup = stage.shop.path(u"backup.cdb"_s);
    const QString link = stage.shop.path(u"link.cdb"_s);
    QVERIFY(QFile::copy(stage.file, backup));
    change(stage.file, "DELETE FROM 納品先");
    QVERIFY(QFile::link(stage.file, link));
    QVERIFY(restoreBackup(backup, link, stage.shop.path(u"kept.cdb"_s), base::unwatched));
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(customersIn(stage.file), 300);
}

void TestFileCare::clockThatWasWrong()
{
    Stage stage;
    QVERIFY(stage.shop.connection.open(stage.file));
    const auto backUpOn = [&](const QDate &day) {
        return backUpDated(stage.shop.connection, stage.shop.folder.path(), day);
    };
    for (int i = 0; i < daysKept; ++i)
        QVERIFY(backUpOn(QDate(10026, 1, 1).addDays(i)));
    const auto aside = backUpOn(QDate(2026, 4, 1));
    QVERIFY(aside);
    QCOMPARE(aside->size(), daysKept);
    const QDir folder(stage.shop.path(u"Backup"_s));
    QCOMPARE(folder.entryList({u"* 2026-04-01.cdb"_s}).filter(u"未来"_s, Qt::CaseSensitive).size(), daysKept);
    // A clock far behind: what was made last stays, whatever its name says.
    for (int i = 1; i < daysKept; ++i)
        QVERIFY(backUpOn(QDate(2026, 4, 1).addDays(i)));
    stage.shop.run(u"DELETE FROM 納品先"_s);
    QVERIFY(backUpOn(QDate(1970, 1, 1)));
    QVERIFY(backUpOn(QDate(2026, 4, 12)));
    QCOMPARE(folder.entryList({u"shop~?????? 1970-01-01.cdb"_s}).size(), 1);
}

void TestFileCare::failedSaveAsStays()
{
    Stage stage;
    stage.load();
    const QString other = stage.shop.path(u"other.cdb"_s);
    QVERIFY(db::createDatabase(other));
    db::Connection elsewhere;
    QVERIFY(elsewhere.open(other));
    ui::file_dialogs::expectFile(other);
    ui::prompts::expectAskCautiously({}, true);
    ui::prompts::expectInform({});
    stage.choose("mnuSave");
    QCOMPARE(stage.shop.connection.fileName(), stage.file);
    QCOMPARE(stage.customers(), 300);
}

void TestFileCare::overwrittenDatabaseIsKept()
{
    Stage stage;
    const QString other = stage.shop.path(u"other.cdb"_s);
    QVERIFY(db::createDatabase(other));
    stage.file = other;
    stage.load();
    for (const char *command : {"mnuSave", "mnuNew"}) {
        ui::file_dialogs::expectFile(stage.shop.path(u"shop.cdb"_s));
        ui::prompts::expectAskCautiously(
            u"指定した名前のファイルが存在します。\n上書きしますか？"_s, true,
            ui::messages::keptUnder(
                base::datedName(stage.shop.path(u"shop.cdb"_s), u"上書き前"_s, QDate(2026, 4, 1))));
        stage.choose(command);
    }
    QCOMPARE(customersIn(stage.shop.path(u"shop 上書き前 2026-04-01.cdb"_s)), 300);
    QCOMPARE(stage.files(u"shop 上書き前*"_s).size(), 2);
}

void TestFileCare::papersAreNoDatabases()
{
    Stage stage;
    QVERIFY(stage.shop.connection.open(stage.file));
    QVERIFY(QFile::link(stage.file, stage.shop.path(u"link.pdf"_s)));
    for (const QString &name : {u"shop.cdb"_s, u"SHOP.CDB"_s, u"link.pdf"_s, u"BackupKanbalore.cdb"_s,
                                u"Kanbalore.cdb"_s, u"Backup/list.csv"_s})
        QVERIFY2(workspace::isDatabase(stage.shop.workspace, stage.shop.path(name)), qPrintable(name));
    for (const QString &name : {u"list.csv"_s, u"shop.pdf"_s})
        QVERIFY2(!workspace::isDatabase(stage.shop.workspace, stage.shop.path(name)), qPrintable(name));
}

void TestFileCare::killedProgramBacksUp_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("told to end") << SIGTERM;
    QTest::newRow("terminal closed") << SIGHUP;
}

void TestFileCare::killedProgramBacksUp()
{
    QFETCH(int, signal);
    Stage stage;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_CONFIG_HOME"_s, stage.shop.settingsFolder.path());
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(QStringLiteral(KANBALORE_PROGRAM),
                  {u"--application-folder"_s, stage.shop.folder.path(), stage.file});
    QVERIFY(program.waitForStarted());
    // Its settings name the file once it is open.
    const auto isOpen = [&] {
        QDirIterator files(stage.shop.settingsFolder.path(), {u"*.ini"_s}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly) && file.readAll().contains("shop.cdb"))
                return true;
        }
        return false;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isOpen(), 60000);
    QTest::qWait(1500); // the window stands
    ::kill(static_cast<pid_t>(program.processId()), signal);
    QVERIFY(program.waitForFinished(30000));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(customersIn(stage.shop.path(u"BackupKanbalore.cdb"_s)), 300);
}

void TestFileCare::twoFirstStarts()
{
    for (int round = 0; round < 20; ++round) {
        QTemporaryDir root;
        QVERIFY(QDir(root.path()).mkpath(u"bin"_s));
        for (const QString &name :
             {u"Kanbalore.cdb"_s, u"Kanbalore.chm"_s, u"ZIPID1.txt"_s, u"ZIPCODE.txt"_s})
            write(root.filePath(u"bin/"_s + name), QByteArray(200'000, 'x'));
        const FolderPlaces places{root.filePath(u"mine"_s), root.filePath(u"bin"_s), {}, {}};
        ApplicationFolder folders[2];
        std::thread second([&] { folders[1] = settleApplicationFolder(places); });
        folders[0] = settleApplicationFolder(places);
        second.join();
        for (const ApplicationFolder &folder : folders)
            QCOMPARE(folder.problem, QString());
    }
}

void TestFileCare::companionsOfStrangers_data()
{
    QTest::addColumn<uint>("folderMode");
    QTest::addColumn<uint>("fileMode");
    QTest::addColumn<bool>("starts");
    QTest::newRow("own") << 0755U << 0755U << true;
    QTest::newRow("shared by a group") << 0775U << 0775U << true;
    QTest::newRow("everybody may write the program") << 0755U << 0757U << false;
    QTest::newRow("everybody may write the folder") << 0777U << 0755U << false;
}

void TestFileCare::companionsOfStrangers()
{
    QFETCH(uint, folderMode);
    QFETCH(uint, fileMode);
    QFETCH(bool, starts);
    QTemporaryDir folder;
    const QString program = companionFile(folder.path(), Companion::CashBook);
    write(program, "#!/bin/sh\n");
    QCOMPARE(::chmod(QFile::encodeName(program).constData(), fileMode), 0);
    QCOMPARE(::chmod(QFile::encodeName(folder.path()).constData(), folderMode), 0);
    QCOMPARE(isCompanionInstalled(folder.path(), Companion::CashBook), starts);
}

QTEST_MAIN(TestFileCare)
#include "tst_file_care.moc"

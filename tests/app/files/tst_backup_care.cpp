#include "support/scripted_test.h"

#include "app/shop_files.h"

#include "app/files/backup_list.h"
#include "app/files/backups.h"
#include "support/earlier_version.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QFrame>
#include <QLabel>
#include <QMenu>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace app;

/// What is not to be lost when files are backed up, and backups opened and restored.
class TestBackupCare : public ScriptedTest
{
    Q_OBJECT

private slots:
    void initialFileIsNoBackup();
    void backupOfAnotherFileIsKept();
    void workInABackupIsKept();
    void emptiedFileKeepsItsBackups();
    void emptiedTableKeepsItsBackup();
    void unchangedFileKeepsNothing();
    void olderVersionIsListed();
    void leavingMakesABackup_data();
    void leavingMakesABackup();
    void listOpensACopy();
    void untouchedCopyGoes_data();
    void untouchedCopyGoes();
    void startOpensACopy_data();
    void startOpensACopy();
    void copyThatCannotBeOpenedGoes_data();
    void copyThatCannotBeOpenedGoes();
    void damagedFileInsteadOfACopy();
    void orderStaysShort();
    void backUpNow();
    void restoringHoldsTheFile();
    void restoringThroughALink();
    void clockThatWasWrong();
};

void TestBackupCare::initialFileIsNoBackup()
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

void TestBackupCare::backupOfAnotherFileIsKept()
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

void TestBackupCare::workInABackupIsKept()
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
void TestBackupCare::emptiedFileKeepsItsBackups()
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

// However few rows it had.
void TestBackupCare::emptiedTableKeepsItsBackup()
{
    Stage stage;
    change(stage.file, "INSERT INTO 規格 (規格ID, 規格) VALUES (1, '大'), (2, '小')");
    openAndClose(stage, stage.file);
    change(stage.file, "DELETE FROM 規格");
    openAndClose(stage, stage.file);
    QCOMPARE(stage.files(u"BackupKanbalore 削除前*.cdb"_s).size(), 1);
}

// Nor one from which the one employee of few was deleted.
void TestBackupCare::unchangedFileKeepsNothing()
{
    Stage stage;
    change(stage.file, "INSERT INTO 社員 (社員ID, 社員名) VALUES (2, '佐藤'), (3, '木村'), (4, '林')");
    openAndClose(stage, stage.file);
    change(stage.file, "DELETE FROM 社員 WHERE 社員ID = 2");
    for (int i = 0; i < 3; ++i) {
        change(stage.file, "DELETE FROM 納品先 WHERE 納品先ID = " + QByteArray::number(300 - i));
        openAndClose(stage, stage.file);
    }
    QCOMPARE(stage.files(u"BackupKanbalore*.cdb"_s).size(), 1);
    QCOMPARE(QDir(stage.shop.path(u"Backup"_s)).entryList({u"*.cdb"_s}, QDir::Files).size(), 1);
}

// Opening or restoring it brings it up to date.
void TestBackupCare::olderVersionIsListed()
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

void TestBackupCare::leavingMakesABackup_data()
{
    QTest::addColumn<QString>("command");
    for (const char *command : {"mnuOpen", "mnuNew", "mnuSave", "mnuBackupOpen"})
        QTest::newRow(command) << QString::fromLatin1(command);
}

void TestBackupCare::leavingMakesABackup()
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

void TestBackupCare::listOpensACopy()
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
    const QString copy = stage.shop.connection.fileName();
    QVERIFY(stage.find<QLabel>("lblBackup")->text().contains(copy));
    ui::file_dialogs::expectFile(stage.shop.path(u"saved.cdb"_s));
    ui::prompts::expectInform(u"バックアップの写しで行った作業は、次のファイルに残っています。"_s, copy);
    stage.click("cmdSaveBackup");
    QCOMPARE(customersIn(copy), 0);
    QCOMPARE(stage.shop.connection.fileName(), stage.shop.path(u"saved.cdb"_s));
    QVERIFY(!notice->isVisible());
    QCOMPARE(customersIn(backup), 300);
    // The prescribed command opens the backup itself; that is said all the same.
    QVERIFY(QFile::copy(stage.file, stage.shop.path(u"BackupKanbalore.cdb"_s)));
    stage.choose("mnuBackupOpen");
    QVERIFY(notice->isVisible());
}

void TestBackupCare::untouchedCopyGoes_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("isStartedAnew");
    QTest::newRow("looked into") << 2 << false;
    QTest::newRow("still open at the end") << 2 << true;
    QTest::newRow("of the earlier version") << 1 << false;
    QTest::newRow("without an index that was declared since") << 0 << false;
}

void TestBackupCare::untouchedCopyGoes()
{
    QFETCH(int, version);
    QFETCH(bool, isStartedAnew);
    Stage stage;
    const QString backup = stage.shop.path(u"BackupKanbalore 削除前 2026-03-30.cdb"_s);
    if (version == 1)
        makeVersion(1, backup, "INSERT INTO 単位 (単位ID, 単位) VALUES (1, '箱')");
    else
        QVERIFY(QFile::copy(stage.file, backup));
    if (version == 0)
        change(backup, "DROP INDEX 入出庫マスター_未完了");
    stage.load();
    ui::file_dialogs::expectFile(backup);
    stage.choose("mnuOpen");
    const QString copy = stage.shop.connection.fileName();
    QVERIFY(copy != stage.file && copy != backup);
    if (isStartedAnew)
        openAndClose(stage, copy);
    if (isStartedAnew)
        stage.load();
    QCOMPARE(stage.shop.connection.fileName(), copy);
    ui::file_dialogs::expectFile(stage.shop.path(u"shop.cdb"_s));
    stage.choose("mnuOpen");
    QCOMPARE(stage.shop.connection.fileName(), stage.shop.path(u"shop.cdb"_s));
    QCOMPARE(QDir(QFileInfo(copy).path()).entryList(QDir::Files), QStringList());
    QCOMPARE(QDir(stage.shop.path(u"Backup"_s)).entryList({u"*写し*"_s}, QDir::Files), QStringList());
    QVERIFY(QFile::exists(backup));
    for (const QAction *recent : stage.find<QMenu>("mnuRecent")->actions())
        QVERIFY(recent->text() != copy);
}

void TestBackupCare::startOpensACopy_data()
{
    QTest::addColumn<bool>("isStored");
    QTest::addColumn<QString>("name");
    const QString dated = u"Backup/shop~1a2b3c 2026-03-30.cdb"_s;
    QTest::newRow("double click") << false << dated;
    QTest::newRow("where the last run ended") << true << dated;
    QTest::newRow("a kept one") << false << u"BackupKanbalore 削除前 2026-03-30.cdb"_s;
}

void TestBackupCare::startOpensACopy()
{
    QFETCH(bool, isStored);
    QFETCH(QString, name);
    Stage stage;
    const QString backup = stage.shop.path(name);
    QDir(stage.shop.folder.path()).mkdir(u"Backup"_s);
    QVERIFY(QFile::copy(stage.file, backup));
    stage.file = isStored ? QString() : backup;
    stage.shop.settings.write(workspace::keys::mdbFileName, isStored ? backup : QString());
    stage.load();
    QVERIFY(stage.shop.connection.isOpen());
    QVERIFY(stage.shop.connection.fileName() != backup);
    QVERIFY(stage.find<QFrame>("fraBackup")->isVisible());
    stage.shop.run(u"DELETE FROM 納品先"_s);
    QCOMPARE(customersIn(backup), 300);
}

void TestBackupCare::copyThatCannotBeOpenedGoes_data()
{
    QTest::addColumn<QByteArray>("damage");
    QTest::addColumn<bool>("atStart");
    for (const bool atStart : {false, true}) {
        const QByteArray when = atStart ? " at start" : "";
        QTest::newRow(QByteArray("refused" + when).constData())
            << QByteArray("ALTER TABLE 単位 RENAME TO tani") << atStart;
        QTest::newRow(QByteArray("not migrated" + when).constData())
            << QByteArray("PRAGMA user_version = 1") << atStart;
    }
}

void TestBackupCare::copyThatCannotBeOpenedGoes()
{
    QFETCH(QByteArray, damage);
    QFETCH(bool, atStart);
    Stage stage;
    const QString shop = stage.file;
    const QString backup = stage.shop.path(u"BackupKanbalore 削除前 2026-03-30.cdb"_s);
    QVERIFY(QFile::copy(stage.file, backup));
    change(backup, damage);
    if (atStart)
        stage.file = backup;
    else
        stage.load();
    ui::prompts::expectInform({});
    if (damage.startsWith("ALTER"))
        ui::prompts::expectAskCautiously({}, false); // not chosen for a repair
    if (atStart) {
        stage.load();
    } else {
        ui::file_dialogs::expectFile(backup);
        stage.choose("mnuOpen");
    }
    QCOMPARE(stage.shop.connection.fileName(), atStart ? QString() : shop);
    const QDir copies(stage.shop.path(u"Backup/開いたバックアップ"_s));
    QCOMPARE(copies.entryList(QDir::Files), QStringList());
    QVERIFY(QFile::exists(backup));
}

void TestBackupCare::damagedFileInsteadOfACopy()
{
    Stage stage;
    const QString backup = stage.shop.path(u"BackupKanbalore 削除前 [2026-03-30].cdb"_s);
    QVERIFY(QFile::copy(stage.file, backup));
    write(stage.shop.path(u"letter.cdb"_s), "Dear Sir");
    stage.load();
    ui::file_dialogs::expectFile(backup);
    stage.choose("mnuOpen");
    const QFileInfo copy(stage.shop.connection.fileName());
    ui::file_dialogs::expectFile(stage.shop.path(u"letter.cdb"_s));
    ui::prompts::expectInform({});
    ui::prompts::expectAskCautiously({}, true);
    stage.choose("mnuOpen");
    QVERIFY(!stage.shop.connection.isOpen());
    QCOMPARE(copy.dir().entryList(QDir::Files), QStringList());
    QCOMPARE(QDir(stage.shop.path(u"Backup"_s)).entryList({u"*写し*"_s}, QDir::Files), QStringList());
}

void TestBackupCare::orderStaysShort()
{
    Stage stage;
    QVERIFY(stage.shop.connection.open(stage.file));
    const QString folder = stage.shop.folder.path();
    const QString order = stage.shop.path(u"Backup/order.txt"_s);
    for (int i = 0; i < 3; ++i)
        QVERIFY(backUpDated(stage.shop.connection, folder, QDate(2026, 4, 1 + i)));
    QFile file(order);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray made = file.readAll();
    file.close();
    const QList<QByteArray> lines = made.split('\n');
    write(order, "gone.cdb\n" + made + (lines[0] + '\n').repeated(5000));
    QVERIFY(backUpDated(stage.shop.connection, folder, QDate(2026, 4, 3)));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), lines[1] + '\n' + lines[0] + '\n' + lines[2] + '\n');
}

void TestBackupCare::backUpNow()
{
    Stage stage;
    stage.load();
    ui::prompts::expectInform(u"バックアップを作成しました。"_s, stage.shop.path(u"Backup"_s));
    stage.choose("mnuBackupNow");
    QCOMPARE(customersIn(stage.shop.path(u"BackupKanbalore.cdb"_s)), 300);
    QCOMPARE(QDir(stage.shop.path(u"Backup"_s)).entryList({u"shop~*.cdb"_s}).size(), 1);
}

// A slip that a second program saved meanwhile would be in neither file.
void TestBackupCare::restoringHoldsTheFile()
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

void TestBackupCare::restoringThroughALink()
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

void TestBackupCare::clockThatWasWrong()
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

QTEST_MAIN(TestBackupCare)
#include "tst_backup_care.moc"

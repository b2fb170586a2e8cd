#include "app/files/application_folder.h"
#include "app/files/backups.h"
#include "app/files/database_files.h"
#include "app/files/start_options.h"
#include "app/main_window/appearance.h"
#include "app/main_window/companions.h"
#include "app/main_window/frmAMain.h"
#include "db/create.h"
#include "db/file_header.h"
#include "db/schema.h"
#include "registers/postal/postal_index.h"
#include "support/earlier_version.h"
#include "support/fresh_shop.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QComboBox>
#include <QFile>
#include <QFileIconProvider>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace app;

namespace
{

const QString connectionFailed = u"データベースの接続に失敗しました。ファイル名を変更してください。"_s;
const QString initialFileChosen =
    u"現在、初期設定用のファイルが選択されていますので、新規にデータベースを作成します。"_s;

void write(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(fileName));
}

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString quoted(const QString &name) { return u'"' + name + u'"'; }

} // namespace

class TestStartup : public ScriptedTest
{
    Q_OBJECT

private slots:
    void commandLine_data();
    void commandLine();
    void textLessItsFirstAndLastCharacter_data();
    void textLessItsFirstAndLastCharacter();
    void choiceOfTheDatabase_data();
    void choiceOfTheDatabase();
    void applicationFolder_data();
    void applicationFolder();
    void anOlderInitialFileIsReplaced();
    void fillingKeepsWhatIsThere();
    void sameFile_data();
    void sameFile();

    void badFilesLeaveTheWindowUsable_data();
    void badFilesLeaveTheWindowUsable();
    void lockedFile();
    void damagedPostalIndexIsTold();
    void initialFileLeadsToANewOne();
    void newRefusesTheInitialFile();
    void newAsksBeforeItOverwrites_data();
    void newAsksBeforeItOverwrites();
    void newLeavesNoJournalOfTheOldFile();
    void openingTheInitialFileLeadsToNew();
    void backupAtClose();
    void backupOfTheBackupIsSkipped();
    void failedBackupStillCloses();

private:
    // A shop with an initial file in its application folder; the window opens what it needs.
    struct Shop : FreshShop
    {
        Shop()
        {
            connection.close();
            if (!db::createDatabase(path(u"Kanbalore.cdb"_s)))
                qFatal("no initial file");
        }
    };
    void fileDialogsNameFoldersInJapanese();
};

void TestStartup::commandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("understood");

    QTest::newRow("nothing") << QStringList() << QString() << QString() << true;
    QTest::newRow("file") << QStringList{u"shop.cdb"_s} << u"\"shop.cdb\""_s << QString() << true;
    QTest::newRow("quotes kept") << QStringList{u"\"D:\\my shop.cdb\""_s} << u"\"D:\\my shop.cdb\""_s
                                 << QString() << true;
    QTest::newRow("blank without quotes")
        << QStringList{u"my"_s, u"shop.cdb"_s} << u"\"my shop.cdb\""_s << QString() << true;
    QTest::newRow("one quote is a name") << QStringList{u"\""_s} << u"\"\"\""_s << QString() << true;
    QTest::newRow("folder") << QStringList{u"--application-folder"_s, u"/x"_s, u"a.cdb"_s} << u"\"a.cdb\""_s
                            << u"/x"_s << true;
    QTest::newRow("folder =") << QStringList{u"--application-folder=/x y"_s} << QString() << u"/x y"_s
                              << true;
    QTest::newRow("folder missing") << QStringList{u"--application-folder"_s} << QString() << QString()
                                    << false;
    QTest::newRow("unknown") << QStringList{u"--frobnicate"_s} << QString() << QString() << false;
    QTest::newRow("after --") << QStringList{u"--"_s, u"--help"_s} << u"\"--help\""_s << QString() << true;
}

void TestStartup::commandLine()
{
    QFETCH(QStringList, arguments);
    const StartOptions options = readStartOptions(arguments);
    QTEST(options.commandLine, "commandLine");
    QTEST(options.applicationFolder, "folder");
    QTEST(options.problem.isEmpty(), "understood");
    QVERIFY(!options.help);
}

void TestStartup::textLessItsFirstAndLastCharacter_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QString>("name");
    QTest::newRow("quoted") << u"\"D:\\data\\shop.cdb\""_s << u"D:\\data\\shop.cdb"_s;
    QTest::newRow("no quotes") << u"shop.cdb"_s << u"hop.cd"_s;
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("one") << u"a"_s << QString();
    QTest::newRow("two") << u"\"\""_s << QString();
}

void TestStartup::textLessItsFirstAndLastCharacter()
{
    QFETCH(QString, commandLine);
    QTEST(databaseInCommandLine(commandLine), "name");
}

void TestStartup::choiceOfTheDatabase_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QString>("chosen");
    QTest::newRow("nothing") << QString() << QString() << u"/folder/Kanbalore.cdb"_s;
    QTest::newRow("stored") << u"/a/shop.cdb"_s << QString() << u"/a/shop.cdb"_s;
    QTest::newRow("command line wins") << u"/a/shop.cdb"_s << u"\"/b/b.cdb\""_s << u"/b/b.cdb"_s;
    QTest::newRow("empty quotes") << u"/a/shop.cdb"_s << u"\"\""_s << u"/folder/Kanbalore.cdb"_s;
    QTest::newRow("relative") << QString() << u"\"shop.cdb\""_s << QDir::current().filePath(u"shop.cdb"_s);
    QTest::newRow("not in memory") << QString() << u"\":memory:\""_s << QDir::currentPath() + u"/:memory:"_s;
    QTest::newRow("NUL") << u"/a/sh\0op.cdb"_s << QString() << u"/a/shop.cdb"_s;
}

void TestStartup::choiceOfTheDatabase()
{
    QFETCH(QString, stored);
    QFETCH(QString, commandLine);
    FreshShop shop;
    shop.settings.write(workspace::keys::mdbFileName, stored);
    QTEST(databaseToOpen(shop.settings, commandLine, u"/folder"_s), "chosen");
}

void TestStartup::applicationFolder_data()
{
    QTest::addColumn<bool>("delivered"); // the executable's folder holds the initial file
    QTest::addColumn<bool>("wanted");
    QTest::addColumn<QString>("beside"); // another file beside the executable
    QTest::addColumn<QString>("chosen");
    QTest::newRow("built") << true << false << u""_s << u"user"_s;
    QTest::newRow("a shop's file there") << true << false << u"店.cdb"_s << u"bin"_s;
    QTest::newRow("its backup there") << true << false << u"BackupKanbalore.cdb"_s << u"bin"_s;
    QTest::newRow("portable") << true << false << u"Kanbalore.portable"_s << u"bin"_s;
    QTest::newRow("installed") << false << false << u""_s << u"user"_s;
    QTest::newRow("wanted") << true << true << u"店.cdb"_s << u"wanted/deep"_s;
    QTest::newRow("wanted, installed") << false << true << u""_s << u"wanted/deep"_s;
}

void TestStartup::applicationFolder()
{
    QFETCH(bool, delivered);
    QFETCH(bool, wanted);
    QTemporaryDir root;
    const FolderPlaces places{wanted ? root.filePath(u"wanted/deep"_s) : QString(), root.filePath(u"bin"_s),
                              root.filePath(u"user"_s), root.filePath(u"share"_s)};
    QDir(root.path()).mkpath(u"bin"_s);
    QDir(root.path()).mkpath(u"share"_s);
    const QString source = delivered ? places.executable : places.installed;
    write(source + u"/Kanbalore.cdb"_s, "initial");
    write(source + u"/ZIPID1.txt"_s, "index");
    QFETCH(QString, beside);
    if (!beside.isEmpty())
        write(places.executable + u'/' + beside, "");

    const ApplicationFolder folder = settleApplicationFolder(places);
    QCOMPARE(folder.problem, QString());
    QFETCH(QString, chosen);
    QCOMPARE(folder.path, root.filePath(chosen));
    QCOMPARE(contentOf(folder.path + u"/Kanbalore.cdb"_s), "initial");
    QCOMPARE(contentOf(folder.path + u"/ZIPID1.txt"_s), "index");
}

// What someone may have filled in stays beside the new one.
void TestStartup::anOlderInitialFileIsReplaced()
{
    QTemporaryDir root;
    const FolderPlaces places{root.filePath(u"mine"_s), root.filePath(u"bin"_s), {}, {}};
    QDir(root.path()).mkpath(u"mine"_s);
    QDir(root.path()).mkpath(u"bin"_s);
    const QString initial = root.filePath(u"mine/Kanbalore.cdb"_s);
    makeVersion(1, initial, "INSERT INTO 単位 (単位ID, 単位) VALUES (1, '箱')");
    // Without one of the program's own it stays, and is brought up to date when it is copied and opened.
    QCOMPARE(settleApplicationFolder(places).problem, QString());
    QCOMPARE(db::storedVersion(initial), 1);
    QVERIFY(db::createDatabase(root.filePath(u"bin/Kanbalore.cdb"_s)));
    QCOMPARE(settleApplicationFolder(places).problem, QString());
    QCOMPARE(db::storedVersion(initial), db::schemaVersion);
    const QStringList kept = QDir(root.filePath(u"mine"_s)).entryList({u"Kanbalore 版1*.cdb"_s});
    QCOMPARE(kept.size(), 1);
    QCOMPARE(db::storedVersion(root.filePath(u"mine/"_s + kept.front())), 1);
}

void TestStartup::fillingKeepsWhatIsThere()
{
    QTemporaryDir root;
    const FolderPlaces places{root.filePath(u"mine"_s), root.filePath(u"bin"_s), {}, {}};
    QDir(root.path()).mkpath(u"bin"_s);
    QDir(root.path()).mkpath(u"mine"_s);
    write(root.filePath(u"bin/Kanbalore.cdb"_s), "new");
    write(root.filePath(u"mine/Kanbalore.cdb"_s), "old");
    QCOMPARE(settleApplicationFolder(places).problem, QString());
    QCOMPARE(contentOf(root.filePath(u"mine/Kanbalore.cdb"_s)), "old");

    // A file where the folder should be, and nothing to fill it with.
    write(root.filePath(u"file"_s), "");
    QVERIFY(!settleApplicationFolder({root.filePath(u"file/x"_s), root.filePath(u"bin"_s), {}, {}})
                 .problem.isEmpty());
    QVERIFY(!settleApplicationFolder({root.filePath(u"other"_s), root.path(), {}, root.path()})
                 .problem.isEmpty());
}

void TestStartup::sameFile_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::addColumn<bool>("same");
    QTest::newRow("case") << u"/a/KANBALORE.CDB"_s << u"/a/Kanbalore.cdb"_s << true;
    QTest::newRow("detour") << u"/a/b/../Kanbalore.cdb"_s << u"/a/Kanbalore.cdb"_s << true;
    QTest::newRow("other folder") << u"/b/Kanbalore.cdb"_s << u"/a/Kanbalore.cdb"_s << false;
    QTest::newRow("root") << u"/Kanbalore.cdb"_s << workspace::joinPath(u"/"_s, u"Kanbalore.cdb"_s) << true;
    QTest::newRow("nothing") << QString() << QString() << false;
}

void TestStartup::sameFile()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    QTEST(isSameFile(one, other), "same");
}

void TestStartup::badFilesLeaveTheWindowUsable_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"missing", "empty", "text", "truncated", "folder", "foreign"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void TestStartup::badFilesLeaveTheWindowUsable()
{
    QFETCH(QString, kind);
    Shop shop;
    const QString bad = shop.path(u"bad.cdb"_s);
    if (kind == "empty"_L1)
        write(bad, {});
    else if (kind == "text"_L1)
        write(bad, QByteArray("Standard Jet DB ").repeated(1000));
    else if (kind == "truncated"_L1)
        write(bad, contentOf(shop.path(u"shop.cdb"_s)).first(5000));
    else if (kind == "folder"_L1)
        QDir(shop.folder.path()).mkdir(u"bad.cdb"_s);
    else if (kind == "foreign"_L1) {
        sqlite3 *foreign = nullptr;
        sqlite3_open(QFile::encodeName(bad).constData(), &foreign);
        sqlite3_exec(foreign, "CREATE TABLE t (a)", nullptr, nullptr, nullptr);
        sqlite3_close(foreign);
    }
    const QByteArray before = contentOf(bad);

    frmAMain window(shop.workspace, screenOpeners());
    ui::prompts::expectInform(connectionFailed, ui::prompts::anyRemark);
    window.load(quoted(bad));
    QVERIFY(!shop.connection.isOpen());
    QCOMPARE(window.findChild<QLineEdit *>(u"txtFileName"_s)->text(), bad);
    QVERIFY(!window.findChild<QAction *>(u"mnuPreTani"_s));
    QVERIFY(!window.findChild<QAction *>(u"mnuTani"_s)->isEnabled());
    QCOMPARE(contentOf(bad), before);

    // The way out: another file.
    QAction *open = window.findChild<QAction *>(u"mnuOpen"_s);
    QVERIFY(open->isEnabled());
    ui::file_dialogs::expectFile(shop.path(u"shop.cdb"_s));
    open->trigger();
    QVERIFY(shop.connection.isOpen());
    QVERIFY(window.findChild<QAction *>(u"mnuTani"_s)->isEnabled());
    QCOMPARE(shop.settings.text(workspace::keys::mdbFileName), shop.path(u"shop.cdb"_s));
}

void TestStartup::lockedFile()
{
    Shop shop;
    sqlite3 *other = nullptr;
    QCOMPARE(sqlite3_open(QFile::encodeName(shop.path(u"shop.cdb"_s)).constData(), &other), SQLITE_OK);
    QCOMPARE(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    frmAMain window(shop.workspace, screenOpeners());
    ui::prompts::expectInform(connectionFailed, ui::prompts::anyRemark);
    window.load(quoted(shop.path(u"shop.cdb"_s)));
    QVERIFY(!shop.connection.isOpen());
    sqlite3_close(other);
}

void TestStartup::damagedPostalIndexIsTold()
{
    Shop shop;
    write(shop.path(u"ZIPID1.txt"_s), "a,b,c\r\n");
    frmAMain window(shop.workspace, screenOpeners());
    ui::prompts::expectInform({});
    window.load(quoted(shop.path(u"shop.cdb"_s)));
    QVERIFY(!shop.workspace.kept<registers::PostalIndex>());
    QVERIFY(shop.connection.isOpen());
}

void TestStartup::initialFileLeadsToANewOne()
{
    Shop shop;
    frmAMain window(shop.workspace, screenOpeners());
    window.load({});
    QCOMPARE(shop.connection.fileName(), shop.path(u"Kanbalore.cdb"_s));

    // Refused: the next time the window becomes active it is asked for again, and no oftener.
    ui::prompts::expectInform(initialFileChosen);
    ui::file_dialogs::expectFile({});
    window.show();
    QTRY_VERIFY(window.isActiveWindow());
    QTest::qWait(50);
    QCOMPARE(ui::prompts::takeUnexpected(), QString());
    QCOMPARE(ui::file_dialogs::takeUnexpected(), QString());
    // Meanwhile nothing can be entered into it.
    QAction *units = window.findChild<QAction *>(u"mnuTani"_s);
    QVERIFY(!units->isEnabled());
    const QLabel *header = window.findChild<QLabel *>(u"lblFile"_s);
    QVERIFY(header->text().contains(u"「新規作成」"_s));

    ui::prompts::expectInform(initialFileChosen);
    ui::file_dialogs::expectFile(shop.path(u"new.cdb"_s));
    window.focusStep();
    QVERIFY(units->isEnabled());
    QCOMPARE(header->text(), u"new.cdb"_s);
    QCOMPARE(shop.connection.fileName(), shop.path(u"new.cdb"_s));
    QCOMPARE(shop.settings.text(workspace::keys::mdbFileName), shop.path(u"new.cdb"_s));
    window.focusStep(); // nothing more to ask
}

void TestStartup::newRefusesTheInitialFile()
{
    Shop shop;
    frmAMain window(shop.workspace, screenOpeners());
    window.load(quoted(shop.path(u"shop.cdb"_s)));
    ui::file_dialogs::expectFile(shop.path(u"KANBALORE.cdb"_s));
    ui::prompts::expectInform(u"ファイル名が不正です。"_s);
    window.findChild<QAction *>(u"mnuNew"_s)->trigger();
    QCOMPARE(shop.connection.fileName(), shop.path(u"shop.cdb"_s));
}

void TestStartup::newAsksBeforeItOverwrites_data()
{
    QTest::addColumn<bool>("yes");
    QTest::addColumn<bool>("current"); // the file in use is the one to overwrite
    QTest::newRow("no") << false << false;
    QTest::newRow("yes") << true << false;
    QTest::newRow("yes, the current file") << true << true;
}

void TestStartup::newAsksBeforeItOverwrites()
{
    QFETCH(bool, yes);
    QFETCH(bool, current);
    Shop shop;
    const QString old = shop.path(u"old.cdb"_s);
    QVERIFY(db::createDatabase(old));
    QVERIFY(shop.connection.open(old));
    shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (1, '箱')"_s);
    shop.connection.close();
    frmAMain window(shop.workspace, screenOpeners());
    window.load(quoted(current ? old : shop.path(u"shop.cdb"_s)));
    window.findChild<QLineEdit *>(u"txtShiireID"_s)->setText(u"3"_s);

    ui::file_dialogs::expectFile(old);
    ui::prompts::expectAskCautiously(u"指定した名前のファイルが存在します。\n上書きしますか？"_s, yes,
                                     ui::messages::keptUnder(u"old 上書き前 2026-04-01.cdb"_s));
    window.findChild<QAction *>(u"mnuNew"_s)->trigger();
    QCOMPARE(shop.connection.fileName(), yes ? old : shop.path(u"shop.cdb"_s));
    QCOMPARE(window.findChild<QLineEdit *>(u"txtShiireID"_s)->text(), yes ? QString() : u"3"_s);
    if (!yes)
        QVERIFY(shop.connection.open(old));
    QCOMPARE(shop.value(u"SELECT COUNT(*) FROM 単位"_s).toInt(), yes ? 0 : 1);
}

void TestStartup::newLeavesNoJournalOfTheOldFile()
{
    Shop shop;
    const QString target = shop.path(u"target.cdb"_s);
    write(target, "old");
    write(target + u"-journal"_s, "old journal");
    QVERIFY(makeFromInitialFile(target, shop.folder.path()));
    QVERIFY(!QFile::exists(target + u"-journal"_s));
    QVERIFY(shop.connection.open(target));
}

void TestStartup::openingTheInitialFileLeadsToNew()
{
    Shop shop;
    frmAMain window(shop.workspace, screenOpeners());
    window.load(quoted(shop.path(u"shop.cdb"_s)));
    ui::file_dialogs::expectFile(shop.path(u"Kanbalore.cdb"_s));
    ui::prompts::expectInform(initialFileChosen);
    ui::file_dialogs::expectFile(shop.path(u"second"_s)); // gets its suffix
    window.findChild<QAction *>(u"mnuOpen"_s)->trigger();
    QCOMPARE(shop.connection.fileName(), shop.path(u"second.cdb"_s));
}

void TestStartup::backupAtClose()
{
    Shop shop;
    const QString backup = shop.path(u"BackupKanbalore.cdb"_s);
    write(backup, "an older backup");
    {
        frmAMain window(shop.workspace, screenOpeners());
        window.load(quoted(shop.path(u"shop.cdb"_s)));
        shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (1, '箱')"_s);
        window.show();
        QVERIFY(window.close());
    }
    QVERIFY(shop.connection.open(backup));
    QCOMPARE(shop.value(u"SELECT 単位 FROM 単位"_s).toString(), u"箱"_s);
}

void TestStartup::backupOfTheBackupIsSkipped()
{
    Shop shop;
    const QString backup = shop.path(u"BackupKanbalore.cdb"_s);
    QVERIFY(QFile::copy(shop.path(u"shop.cdb"_s), backup));
    frmAMain window(shop.workspace, screenOpeners());
    window.load(quoted(shop.path(u"shop.cdb"_s)));
    window.findChild<QAction *>(u"mnuBackupOpen"_s)->trigger();
    QCOMPARE(shop.connection.fileName(), backup);
    const QByteArray before = contentOf(backup);
    QVERIFY(backUpAtExit(shop.connection, shop.folder.path(), shop.now.date()));
    QVERIFY(window.close());
    QCOMPARE(contentOf(backup), before);
}

void TestStartup::failedBackupStillCloses()
{
    Shop shop;
    // A folder of the backup's name cannot be replaced by a file.
    QDir(shop.folder.path()).mkpath(u"BackupKanbalore.cdb/full"_s);
    frmAMain window(shop.workspace, screenOpeners());
    window.load(quoted(shop.path(u"shop.cdb"_s)));
    window.show();
    ui::prompts::expectInform(
        u"データベースのバックアップに失敗しました。"_s,
        u"ファイルをコピーできませんでした。空き容量と、書き込みのできる場所かどうかを確かめてください。("_s +
            shop.path(u"BackupKanbalore 変更あり 2026-04-01.cdb"_s) + u')');
    QVERIFY(window.close());
    QCOMPARE(QDir(shop.folder.path()).entryList({u"*.tmp"_s}), QStringList());
}

void TestStartup::fileDialogsNameFoldersInJapanese()
{
    app::setUpAppearance(*qApp);
    QCOMPARE(QFileIconProvider().type(QFileInfo(QDir::tempPath())), u"フォルダ"_s);
}

QTEST_MAIN(TestStartup)
#include "tst_startup.moc"

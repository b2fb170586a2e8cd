#include "support/scripted_test.h"

#include "app/shop_files.h"

#include "app/files/application_folder.h"
#include "app/files/foreign_name.h"
#include "app/main_window/companions.h"
#include "base/dated_name.h"
#include "db/care/file_repair.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "workspace/workspace_targets.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace app;

/// What is not to be lost when files are opened, left and replaced.
class TestFileCare : public ScriptedTest
{
    Q_OBJECT

private slots:
    void wrongChoices_data();
    void wrongChoices();
    void nameInAnotherEncoding();
    void namesOfOldSystemsBecomeReadable_data();
    void namesOfOldSystemsBecomeReadable();
    void damagedFileCanBeChosenForRepair();
    void recentFiles();
    void emptyingKeepsACopy();
    void twoCompactionsInOneFolder();
    void failedSaveAsStays();
    void overwrittenDatabaseIsKept();
    void papersAreNoDatabases();
    void twoFirstStarts();
    void companionsOfStrangers_data();
    void companionsOfStrangers();
};

void TestFileCare::wrongChoices_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no backup yet") << QString();
    QTest::newRow("gone") << u"gone.cdb"_s;
    QTest::newRow("text") << u"letter.txt"_s;
    QTest::newRow("paper") << u"bill.pdf"_s;
    QTest::newRow("damaged behind its header") << u"damaged.cdb"_s;
}

void TestFileCare::wrongChoices()
{
    QFETCH(QString, name);
    Stage stage;
    write(stage.shop.path(u"letter.txt"_s), "Dear Sir");
    write(stage.shop.path(u"bill.pdf"_s), "%PDF-1.4\n");
    QVERIFY(QFile::copy(stage.file, stage.shop.path(u"damaged.cdb"_s)));
    QFile::resize(stage.shop.path(u"damaged.cdb"_s), 2 * 4096);
    stage.load();
    // What it is and what to do; there is nothing to repair.
    const bool isPaper = name == "bill.pdf"_L1;
    if (isPaper)
        ui::prompts::expectInform(
            ui::messages::databaseNotUsable(),
            u"このファイルは「PDF の文書」で、データベースファイルではないため、開けませんでした。"
            "データベースのファイル（名前の終わりが「.cdb」のもの）を選んでください。"_s);
    else
        ui::prompts::expectInform({});
    if (!name.isEmpty())
        ui::file_dialogs::expectFile(stage.shop.path(name));
    if (QFile::exists(stage.shop.path(name)) && !name.isEmpty() && !isPaper)
        ui::prompts::expectAskCautiously({}, false);
    stage.choose(name.isEmpty() ? "mnuBackupOpen" : "mnuOpen");
    QCOMPARE(stage.shop.connection.fileName(), stage.file);
    QCOMPARE(stage.customers(), 300);
    QVERIFY(stage.shop.settings.text(workspace::keys::mdbFileName) != stage.shop.path(name));
    QCOMPARE(stage.find<QLineEdit>("txtFileName")->text(), stage.file);
    if (!name.isEmpty())
        QCOMPARE(ui::file_dialogs::lastFolder(), stage.shop.folder.path());
}

// As a disk of an old computer has it: Shift-JIS. What is open stays open, and the clerk learns what to do.
void TestFileCare::nameInAnotherEncoding()
{
    Stage stage;
    const QByteArray bytes = QFile::encodeName(stage.shop.folder.path()) + "/\x93\x58.cdb";
    const int made = ::open(bytes.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    QVERIFY(made >= 0);
    ::close(made);
    stage.load();
    const QString name = QFile::decodeName(bytes);
    ui::file_dialogs::expectFile(name);
    ui::prompts::expectInform(
        ui::messages::databaseNotUsable(),
        u"ファイルまたはフォルダの名前が UTF-8 でない文字コードで付けられているため、開けませんでした。"
        "名前を付け直してから開いてください。(%1)"_s.arg(name));
    stage.choose("mnuOpen");
    QCOMPARE(stage.shop.connection.fileName(), stage.file);
    QCOMPARE(::unlink(bytes.constData()), 0);
}

void TestFileCare::namesOfOldSystemsBecomeReadable_data()
{
    QTest::addColumn<QByteArray>("raw");
    QTest::addColumn<QString>("readable"); // empty: left alone
    QTest::newRow("Shift-JIS") << QByteArray("\x93\x58 2020.cdb") << u"店 2020.cdb"_s;
    QTest::newRow("half-width kana") << QByteArray("\xc3\xbd\xc4.cdb") << u"ﾃｽﾄ.cdb"_s;
    QTest::newRow("EUC-JP") << QByteArray("\xc4\xb9\xcc\xee.cdb") << u"長野.cdb"_s;
    QTest::newRow("neither") << QByteArray("\xff\xfe.cdb") << QString();
    QTest::newRow("UTF-8") << QByteArray("店.cdb") << QString();
    QTest::newRow("not there") << QByteArray() << QString();
}

void TestFileCare::namesOfOldSystemsBecomeReadable()
{
    QFETCH(QByteArray, raw);
    QFETCH(QString, readable);
    const auto bytesOf = [](const QString &file) {
        QFile opened(file);
        return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray("none");
    };
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.path()) + '/' + (raw.isEmpty() ? "\x93\x58.cdb" : raw);
    if (!raw.isEmpty()) {
        const int made = ::open(path.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        QVERIFY(made >= 0 && ::write(made, "shop", 4) == 4);
        ::close(made);
    }
    const auto name = app::readableName(path);
    QCOMPARE(name.value_or(QString()), readable.isEmpty() ? QString() : folder.filePath(readable));
    if (name) {
        write(*name, "another");
        QVERIFY(!app::giveName(path, *name));
        QCOMPARE(bytesOf(*name), "another");
        QVERIFY(QFile::remove(*name));
        QVERIFY(app::giveName(path, *name));
        QCOMPARE(bytesOf(*name), "shop");
    }
    ::unlink(path.constData());
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
    QDir(stage.shop.folder.path()).mkpath(u"Backup/開いたバックアップ"_s);
    for (const QString &name :
         {u"shop.cdb"_s, u"SHOP.CDB"_s, u"link.pdf"_s, u"BackupKanbalore.cdb"_s, u"Kanbalore.cdb"_s,
          u"Backup/list.csv"_s, u"Backup/開いたバックアップ/list.csv"_s})
        QVERIFY2(workspace::isDatabase(stage.shop.workspace, stage.shop.path(name)), qPrintable(name));
    for (const QString &name : {u"list.csv"_s, u"shop.pdf"_s})
        QVERIFY2(!workspace::isDatabase(stage.shop.workspace, stage.shop.path(name)), qPrintable(name));
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

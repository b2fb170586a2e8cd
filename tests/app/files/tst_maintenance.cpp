#include "support/scripted_test.h"

#include "app/shop_window.h"

#include "app/files/backups.h"
#include "app/files/repair_report.h"
#include "app/files/table_emptying.h"
#include "db/care/backup.h"
#include "db/care/salvage.h"
#include "db/create.h"
#include "db/schema.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "workspace/settings.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace app;

namespace
{

const QString optimised = u"データベースを最適化しました。"_s;
const QString overwrite = u"指定した名前のファイルが存在します。\n上書きしますか？"_s;
const QString invalidName = u"ファイル名が不正です。"_s;

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(fileName));
}

// Does \a work in the next modal screen and closes it.
void inNextScreen(const std::function<void(QDialog &)> &work)
{
    QTimer::singleShot(0, qApp, [work] {
        auto *screen = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!screen)
            qFatal("no screen was opened");
        work(*screen);
        screen->close();
    });
}

} // namespace

/// The commands that look after the database file, through the real main window.
class TestMaintenance : public ScriptedTest
{
    Q_OBJECT

private slots:
    void saveAsGoesOnInTheCopy();
    void saveAsRefusals_data();
    void saveAsRefusals();
    void saveAsOverAFileInUse();
    void emptyingItem_data();
    void emptyingItem();
    void emptyingEverything();
    void refusedEmptyingKeepsAll();
    void repairShrinks();
    void repairOfADamagedFile_data();
    void repairOfADamagedFile();
    void repairTellsWhatIsLost();
    void repairListsWhatItDoubts();
    void repairBesideAnotherProgram();
    void hopelessFileStays();
    void foreignDefinitionsNeedANewFile();
    void buildAnew();
    void datedBackups();
    void listOfBackups();
    void nothingOpenIsNotBackedUp();
};

void TestMaintenance::saveAsGoesOnInTheCopy()
{
    Stage stage;
    stage.load();
    const QString copy = stage.shop.path(u"copy.cdb"_s);
    write(copy, "old");
    ui::file_dialogs::expectFile(copy);
    const QString remark = ui::messages::keptUnder(u"copy 上書き前 2026-04-01.cdb"_s);
    ui::prompts::expectAskCautiously(overwrite, false, remark);
    stage.choose("mnuSave");
    QCOMPARE(contentOf(copy), QByteArray("old"));

    ui::file_dialogs::expectFile(copy);
    ui::prompts::expectAskCautiously(overwrite, true, remark);
    stage.choose("mnuSave");
    QCOMPARE(stage.shop.connection.fileName(), copy);
    QCOMPARE(stage.find<QLineEdit>("txtFileName")->text(), copy);
    QCOMPARE(stage.shop.settings.text(workspace::keys::mdbFileName), copy);
    stage.shop.run(u"DELETE FROM 納品先"_s);
    QVERIFY(stage.shop.connection.open(stage.file));
    QCOMPARE(stage.customers(), 300);
}

void TestMaintenance::saveAsRefusals_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("the initial file") << u"KANBALORE.cdb"_s;
    QTest::newRow("the current file") << u"shop.cdb"_s;
    QTest::newRow("no such folder") << u"missing/copy.cdb"_s;
}

void TestMaintenance::saveAsRefusals()
{
    QFETCH(QString, name);
    Stage stage;
    stage.load();
    ui::file_dialogs::expectFile(stage.shop.path(name));
    ui::prompts::expectInform(invalidName);
    stage.choose("mnuSave");
    QCOMPARE(stage.shop.connection.fileName(), stage.file);
    QCOMPARE(stage.customers(), 300);
}

void TestMaintenance::saveAsOverAFileInUse()
{
    Stage stage;
    stage.load();
    const QString other = stage.shop.path(u"other.cdb"_s);
    QVERIFY(db::createDatabase(other));
    db::Connection elsewhere;
    QVERIFY(elsewhere.open(other));
    ui::file_dialogs::expectFile(other);
    ui::prompts::expectAskCautiously(overwrite, true,
                                     ui::messages::keptUnder(u"other 上書き前 2026-04-01.cdb"_s));
    ui::prompts::expectInform({});
    stage.choose("mnuSave");
    QVERIFY(elsewhere.execute(u"INSERT INTO 単位 (単位ID, 単位) VALUES (1, '箱')"_s));
    elsewhere.close();
    QVERIFY(elsewhere.open(other));
    QCOMPARE(elsewhere.select(u"SELECT * FROM 単位"_s)->count(), 1);
    QCOMPARE(stage.files(u"*.tmp"_s), QStringList());
}

void TestMaintenance::emptyingItem_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("message");
    QTest::newRow("仕入先情報") << u"仕入先"_s << u"仕入先情報を削除しました。"_s;
    QTest::newRow("納品先情報") << u"納品先"_s << u"納品先情報を削除しました。"_s;
    QTest::newRow("納品商品") << u"納品商品"_s << u"商品を削除しました。"_s;
    QTest::newRow("仕入商品") << u"仕入商品"_s << u"商品を削除しました。"_s;
    QTest::newRow("商品規格") << u"規格"_s << u"規格を削除しました。"_s;
    QTest::newRow("商品単位") << u"単位"_s << u"単位を削除しました。"_s;
    QTest::newRow("登録区分") << u"登録区分"_s << u"登録区分を削除しました。"_s;
    QTest::newRow("自社情報") << u"自社情報"_s << u"自社情報を削除しました。"_s;
    QTest::newRow("社員") << u"社員"_s << u"社員を削除しました。"_s;
    QTest::newRow("発送伝票") << u"発送マスター"_s << u"発送マスターを削除しました。"_s;
}

void TestMaintenance::emptyingItem()
{
    QFETCH(QString, table);
    QFETCH(QString, message);
    const QString item = QString::fromUtf8(QTest::currentDataTag());
    Stage stage;
    stage.load();
    for (const db::Table &each : db::tables()) {
        stage.shop.run(u"INSERT OR IGNORE INTO %1 (%2) VALUES (1)"_s.arg(each.name, each.key));
    }
    stage.find<QComboBox>("Combo3")->setCurrentText(item);
    const int deleted = stage.shop.value(u"SELECT count(*) FROM "_s + table).toInt();
    ui::prompts::expectAskCautiously(
        item + u" を削除します。よろしいですか？"_s, true,
        u"%1：%2 行\n削除する前の内容は「shop 削除前 2026-04-01.cdb」に残します。"_s.arg(item).arg(deleted));
    ui::prompts::expectInform(message);
    stage.click("Command58");
    for (const db::Table &each : db::tables()) {
        const int rows = stage.shop.value(u"SELECT count(*) FROM "_s + each.name).toInt();
        QVERIFY2((rows == 0) == (each.name == table), qPrintable(each.name));
    }
    QCOMPARE(stage.find<QComboBox>("dbcShain")->count(), table == u"社員"_s ? 0 : 1);
}

void TestMaintenance::emptyingEverything()
{
    Stage stage;
    stage.load();
    ui::prompts::expectInform(u"削除するテーブルを選択してください。"_s);
    stage.click("Command58");
    stage.find<QComboBox>("Combo3")->setCurrentIndex(0);
    ui::prompts::expectAskCautiously({}, false);
    stage.click("Command58");
    QCOMPARE(stage.customers(), 300);
    ui::prompts::expectAskCautiously({}, true);
    ui::prompts::expectInform(u"すべて選択を削除しました。"_s);
    stage.click("Command58");
    for (const db::Table &table : db::tables())
        QCOMPARE(stage.shop.value(u"SELECT count(*) FROM "_s + table.name).toInt(),
                 table.name == u"税率"_s ? 7 : 0);
}

// One that fails in the middle has deleted nothing.
void TestMaintenance::refusedEmptyingKeepsAll()
{
    FreshShop shop;
    Stage::fill(shop);
    shop.fireTriggers();
    shop.run(u"CREATE TRIGGER t BEFORE DELETE ON 社員 BEGIN SELECT RAISE(ABORT, 'no'); END"_s);
    QVERIFY(!emptyTables(shop.connection, u"すべて選択"_s));
    QCOMPARE(shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 300);
    QVERIFY(!shop.connection.inTransaction());
}

void TestMaintenance::repairShrinks()
{
    Stage stage;
    stage.shop.settings.write(workspace::keys::employee, 1);
    stage.load();
    QCOMPARE(stage.find<QComboBox>("dbcShain")->currentText(), u"山田"_s);
    stage.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID > 10"_s);
    const qint64 before = QFileInfo(stage.file).size();
    ui::prompts::expectInform(optimised);
    stage.click("Command22");
    const qint64 after = QFileInfo(stage.file).size();
    QVERIFY(after < before);
    QCOMPARE(stage.find<QLabel>("Label5")->text(), u"Old FileSize %1 byte"_s.arg(before));
    QCOMPARE(stage.find<QLabel>("Label7")->text(), u"New FileSize %1 byte"_s.arg(after));
    QCOMPARE(stage.shop.connection.fileName(), stage.file);
    QCOMPARE(stage.customers(), 10);
    QCOMPARE(stage.find<QComboBox>("dbcShain")->count(), 1);
    // Nobody is chosen; Enter takes the person of before, and presses no button.
    auto *employee = stage.find<QComboBox>("dbcShain");
    QCOMPARE(employee->currentIndex(), -1);
    QCOMPARE(stage.window->focusWidget(), employee);
    QVERIFY(employee->placeholderText().contains(u"山田"_s));
    QTest::keyClick(employee, Qt::Key_Return);
    QCOMPARE(employee->currentText(), u"山田"_s);
    QCOMPARE(stage.shop.workspace.panel.employeeId, 1);
    QCOMPARE(stage.files(u"*.cdb"_s), (QStringList{u"Kanbalore.cdb"_s, u"shop.cdb"_s}));
}

void TestMaintenance::repairOfADamagedFile_data()
{
    QTest::addColumn<QByteArray>("mark"); // of the page that is emptied
    QTest::addColumn<bool>("opens");
    QTest::newRow("in the middle of the customers") << QByteArray("顧客150") << true;
    QTest::newRow("the first customers") << QByteArray("顧客1") << false;
    QTest::newRow("the first page") << QByteArray("SQLite format 3") << false;
}

void TestMaintenance::repairOfADamagedFile()
{
    QFETCH(QByteArray, mark);
    QFETCH(bool, opens);
    Stage stage;
    QByteArray bytes = contentOf(stage.file);
    bytes.replace(bytes.indexOf(mark) / 4096 * 4096, 4096, QByteArray(4096, 0));
    write(stage.file, bytes);
    if (!opens)
        ui::prompts::expectInform(u"データベースの接続に失敗しました。ファイル名を変更してください。"_s,
                                  ui::prompts::anyRemark);
    stage.load();
    QCOMPARE(stage.shop.connection.isOpen(), opens);
    ui::prompts::expectInform({}); // what the check found
    ui::prompts::expectInform({}); // what was carried over
    ui::prompts::expectInform(optimised);
    stage.click("Command22");
    QVERIFY(stage.shop.connection.isOpen());
    QCOMPARE(stage.shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
    QVERIFY(stage.customers() > 100);
    QCOMPARE(contentOf(stage.shop.path(u"shop 破損 2026-04-01.cdb"_s)), bytes);
}

void TestMaintenance::repairTellsWhatIsLost()
{
    db::Salvage outcome;
    outcome.tables = {{.table = u"入出庫マスター"_s, .carried = 20, .unread = 2},
                      {.table = u"税率"_s, .isAsNew = true},
                      {.table = u"納品先"_s, .carried = 5, .cut = 1, .emptied = {u"メモ"_s}}};
    for (int line = 1; line <= 12; ++line)
        outcome.orphans.push_back({7, u"りんご%1"_s.arg(line), -1200.5});
    outcome.orphanLines = 12;
    const QString said = app::repairReport(outcome);
    for (
        const QString &expected :
        {u"25 行を新しいファイルに移しました。\n「入出庫マスター」で読めなかった行：2\n「税率」は読めなかった"_s,
         u"\n「納品先」の項目「メモ」は"_s,
         u"途中までしか読めなかった文字：1 か所\n伝票が失われた明細：12 行"_s,
         u"\n　伝票ID 7：りんご10　-1,2"_s})
        QVERIFY2(said.contains(expected), qPrintable(said));
    QVERIFY(said.endsWith(u"\n　ほか 2 行"_s) && !said.contains(u"りんご11"_s));
}

// A page of slip lines stands where customers were.
void TestMaintenance::repairListsWhatItDoubts()
{
    Stage stage;
    QByteArray bytes = contentOf(stage.file);
    const auto pageWith = [&bytes](const QByteArray &mark) { return bytes.lastIndexOf(mark) / 4096 * 4096; };
    bytes.replace(pageWith("顧客150"), 4096, bytes.mid(pageWith("りんご"), 4096));
    write(stage.file, bytes);
    stage.load();
    ui::prompts::expectInform({}); // what the check found
    ui::prompts::expectInform({}); // what was carried over
    ui::prompts::expectInform(optimised);
    stage.click("Command22");
    QCOMPARE(stage.shop.value(u"SELECT count(*) FROM 入出庫サブ"_s).toInt(), 300);
    QVERIFY(contentOf(stage.shop.path(u"shop 判断できない行 2026-04-01.csv"_s)).contains("りんご"));
}

void TestMaintenance::repairBesideAnotherProgram()
{
    Stage stage;
    stage.load();
    db::Connection elsewhere;
    QVERIFY(elsewhere.open(stage.file));
    ui::prompts::expectInform({});
    stage.click("Command22");
    QVERIFY(stage.shop.connection.isOpen());
    QVERIFY(elsewhere.execute(u"DELETE FROM 納品先"_s));
    QCOMPARE(stage.customers(), 0);
}

void TestMaintenance::hopelessFileStays()
{
    Stage stage;
    const QByteArray letter = QByteArray("Dear Sir, ").repeated(1000);
    write(stage.file, letter);
    ui::prompts::expectInform({});
    stage.load();
    ui::prompts::expectInform({}); // what the check found
    ui::prompts::expectInform({}); // nothing to be saved
    stage.click("Command22");
    QCOMPARE(contentOf(stage.file), letter);
    QCOMPARE(stage.files(u"*"_s).filter(u"破損"_s), QStringList());
    QVERIFY(!stage.find<QPushButton>("Command58")->isEnabled());
}

// A file that is sound, but not one to be opened: repairing it does not help, and says what does.
void TestMaintenance::foreignDefinitionsNeedANewFile()
{
    Stage stage;
    QVERIFY(stage.shop.connection.open(stage.file));
    stage.shop.run(u"CREATE TRIGGER t BEFORE DELETE ON 社員 BEGIN SELECT RAISE(ABORT, 'no'); END"_s);
    stage.shop.connection.close();
    ui::prompts::expectInform(u"データベースの接続に失敗しました。ファイル名を変更してください。"_s,
                              ui::prompts::anyRemark);
    stage.load();
    ui::prompts::expectInform(
        u"データベースを最適化しましたが、開けませんでした。\n"
        "このプログラムのものではない定義（t）が含まれているため、データベースを開けませんでした。"
        "「環境設定」の「データベースの再作成」で、新しいファイルに移せます。"_s);
    stage.click("Command22");
    inNextScreen([&](QDialog &screen) {
        ui::file_dialogs::expectFile(stage.shop.path(u"anew.cdb"_s));
        ui::prompts::expectAsk({}, true);
        screen.findChild<QPushButton *>(u"Command1"_s)->click();
    });
    stage.click("Command7");
    QVERIFY(stage.shop.connection.isOpen());
    QCOMPARE(stage.customers(), 300);
}

void TestMaintenance::buildAnew()
{
    Stage stage;
    stage.load();
    inNextScreen([&](QDialog &screen) {
        QCOMPARE(screen.objectName(), u"DialogCompile"_s);
        auto *make = screen.findChild<QPushButton *>(u"Command1"_s);
        ui::file_dialogs::expectFile(stage.file);
        ui::prompts::expectInform(invalidName);
        make->click();
        ui::file_dialogs::expectFile(stage.shop.path(u"anew.cdb"_s));
        ui::prompts::expectAsk(
            u"すべての行を新しいファイルに移しました。\n新しいファイルで作業を続けますか？"_s, true);
        make->click();
        const QAbstractItemModel *rows = screen.findChild<QTableView *>(u"dgdTables"_s)->model();
        QCOMPARE(rows->rowCount(), int(db::tables().size()));
        for (int row = 0; row < rows->rowCount(); ++row) {
            const QString table = rows->index(row, 0).data().toString();
            QCOMPARE(rows->index(row, 1).data().toInt(),
                     stage.shop.value(u"SELECT count(*) FROM "_s + table).toInt());
            QCOMPARE(rows->index(row, 2).data().toString(), u"0"_s);
        }
    });
    stage.click("Command7");
    QCOMPARE(stage.shop.connection.fileName(), stage.shop.path(u"anew.cdb"_s));
    QCOMPARE(stage.customers(), 300);
}

void TestMaintenance::datedBackups()
{
    Stage stage;
    QVERIFY(stage.shop.connection.open(stage.file));
    const QDir folder(stage.shop.path(u"Backup"_s));
    // Every other day, so that it is days worked that count.
    for (int day = 0; day < 24; day += 2)
        QVERIFY(backUpDated(stage.shop.connection, stage.shop.folder.path(), QDate(2026, 4, 1).addDays(day)));
    QStringList names = folder.entryList({u"*.cdb"_s}, QDir::Files, QDir::Name);
    QCOMPARE(names.size(), daysKept);
    QVERIFY(names.first().endsWith(u" 2026-04-05.cdb"_s));
    // Another database of the same name is counted by itself, and a failed copy removes none.
    QVERIFY(QDir(stage.shop.folder.path()).mkdir(u"branch"_s));
    const QString branch = stage.shop.path(u"branch/shop.cdb"_s);
    QVERIFY(db::createDatabase(branch));
    QVERIFY(stage.shop.connection.open(branch));
    QVERIFY(backUpDated(stage.shop.connection, stage.shop.folder.path(), QDate(2026, 4, 23)));
    names = folder.entryList({u"*.cdb"_s}, QDir::Files, QDir::Name);
    QCOMPARE(names.size(), daysKept + 1);
    // A backup that is worked in is not backed up in its turn.
    QVERIFY(stage.shop.connection.open(folder.filePath(names.first())));
    QVERIFY(backUpDated(stage.shop.connection, stage.shop.folder.path(), QDate(2026, 5, 1)));
    QCOMPARE(folder.entryList({u"*.cdb"_s}, QDir::Files, QDir::Name), names);
}

void TestMaintenance::listOfBackups()
{
    Stage stage;
    stage.load();
    QVERIFY(backUpDated(stage.shop.connection, stage.shop.folder.path(), QDate(2026, 3, 30)));
    stage.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID > 100"_s);
    const QDir folder(stage.shop.path(u"Backup"_s));
    const QString damaged = folder.filePath(u"shop~000000 2026-03-29.cdb"_s);
    QByteArray bytes = contentOf(stage.file);
    bytes.replace(bytes.size() - 3 * 4096, 2 * 4096, QByteArray(2 * 4096, 0));
    write(damaged, bytes);
    write(folder.filePath(u"note.txt"_s), "no backup");

    const auto look = [&](const char *button, bool sound) {
        inNextScreen([&, button, sound](QDialog &screen) {
            auto *grid = screen.findChild<QTableView *>(u"dgdBackups"_s);
            QCOMPARE(grid->model()->rowCount(), 2);
            for (int row = 0; row < 2; ++row) {
                const bool isSound = grid->model()->index(row, 5).data().toString() == u"正常"_s;
                QCOMPARE(grid->model()->index(row, 3).data().toString(), isSound ? u"300"_s : u"-"_s);
                grid->setCurrentIndex(isSound == sound ? grid->model()->index(row, 0) : QModelIndex());
                auto *pressed = screen.findChild<QPushButton *>(QLatin1StringView(button));
                if (isSound == sound) {
                    QCOMPARE(pressed->isEnabled(), sound);
                    pressed->click();
                    return;
                }
            }
        });
    };
    look("cmdOpen", false);
    stage.click("cmdBackups");
    QCOMPARE(stage.shop.connection.fileName(), stage.file);

    // What was issued since is out all the same.
    stage.shop.run(u"INSERT INTO 発行控 (種類, 番号) VALUES ('納品書', 'O9')"_s);
    look("cmdRestore", true);
    ui::prompts::expectAsk({}, true);
    ui::prompts::expectInform(
        u"バックアップを復元しました（バックアップの後に発行した書類 1 件の控えは、発行控えに残しました）。"_s);
    stage.choose("mnuBackups");
    QCOMPARE(stage.shop.value(u"SELECT 番号 FROM 発行控"_s), QVariant(u"O9"_s));
    QCOMPARE(stage.shop.connection.fileName(), stage.file);
    QCOMPARE(stage.customers(), 300);
    QVERIFY(stage.shop.connection.open(stage.shop.path(u"shop 復元前 2026-04-01.cdb"_s)));
    QCOMPARE(stage.customers(), 100);

    look("cmdOpen", true);
    stage.choose("mnuBackups");
    QVERIFY(stage.shop.connection.fileName().startsWith(folder.path()));
    QCOMPARE(stage.customers(), 300);
}

// A refused file neither frightens at exit nor takes the place of the last good backup.
void TestMaintenance::nothingOpenIsNotBackedUp()
{
    Stage stage;
    write(stage.shop.path(u"BackupKanbalore.cdb"_s), "the last good one");
    write(stage.file, "no database");
    ui::prompts::expectInform(u"データベースの接続に失敗しました。ファイル名を変更してください。"_s,
                              ui::prompts::anyRemark);
    stage.load();
    QVERIFY(stage.window->close());
    QCOMPARE(contentOf(stage.shop.path(u"BackupKanbalore.cdb"_s)), QByteArray("the last good one"));
}

QTEST_MAIN(TestMaintenance)
#include "tst_maintenance.moc"

#include "app/files/DialogConversion.h"
#include "app/files/old_file_conversion.h"
#include "app/main_window/frmAMain.h"
#include "app/main_window/screens.h"
#include "db/create.h"
#include "db/old_files/jet_file.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "workspace/settings_keys.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace app;

namespace
{

const QString legacyFile = QStringLiteral(LEGACY_FILE);
const QString question = u"「old.cdb」は以前の形式のデータベースファイルです。\n"
                         "新しい形式のファイルに変換して開きます。\n元のファイルは変更しません。\n\n"
                         "変換しますか？"_s;
const QString connectionFailed = u"データベースの接続に失敗しました。ファイル名を変更してください。"_s;

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct Shop : FreshShop
{
    Shop()
    {
        connection.close();
        if (!QFile::copy(legacyFile, old))
            qFatal("no old file");
    }

    QString old = path(u"old.cdb"_s);
    QString converted = path(u"converted.cdb"_s);
};

// Looks at the summary when it comes, and closes it with Enter.
void answerSummary(QString &seen)
{
    QTimer::singleShot(0, [&seen] {
        auto *dialog = qobject_cast<DialogConversion *>(QApplication::activeModalWidget());
        if (!dialog) {
            answerSummary(seen);
            return;
        }
        ScreenDriver driver(dialog);
        driver.press("cmdCopy");
        const auto &grid = driver.the<QTableWidget>("grdTables");
        seen = driver.the<QLabel>("lblOutcome").text() + u' ' + grid.item(8, 0)->text() +
               grid.item(8, 2)->text();
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
    });
}

void openByMenu(frmAMain &window, const QString &fileName)
{
    ui::file_dialogs::expectFile(fileName);
    window.findChild<QAction *>(u"mnuOpen"_s)->trigger();
}

} // namespace

class TestOldFiles : public ScriptedTest
{
    Q_OBJECT

private slots:
    void openConverts();
    void refusalLeavesAllAsItWas();
    void startWithAnOldFile();
    void cannotBeRead();
    void oldBackup();
    void missingSearchKeys();
    void commandLine();
};

void TestOldFiles::openConverts()
{
    Shop shop;
    frmAMain window(shop.workspace, screenOpeners());
    window.load(u'"' + shop.path(u"shop.cdb"_s) + u'"');
    QString seen;
    answerSummary(seen);
    ui::prompts::expectAsk(question, true);
    ui::file_dialogs::expectFile(shop.old);
    ui::file_dialogs::expectFile(shop.path(u"shop.cdb"_s)); // there is such a file
    ui::prompts::expectInform(u"指定した名前のファイルが存在します。\n別の名前を指定してください。"_s);
    ui::file_dialogs::expectFile(shop.converted);
    window.findChild<QAction *>(u"mnuOpen"_s)->trigger();

    QCOMPARE(seen, u"すべてのデータを移しました。 納品先299"_s);
    QVERIFY(QApplication::clipboard()->text().startsWith(u"単位\t6\t6\n"_s));
    QCOMPARE(shop.connection.fileName(), shop.converted);
    QCOMPARE(shop.value(u"SELECT count(*) FROM 入出庫サブ"_s).toInt(), 2062);
    QCOMPARE(shop.settings.text(workspace::keys::mdbFileName), shop.converted);
    QCOMPARE(contentOf(shop.old), contentOf(legacyFile));
}

void TestOldFiles::refusalLeavesAllAsItWas()
{
    Shop shop;
    frmAMain window(shop.workspace, screenOpeners());
    window.load(u'"' + shop.path(u"shop.cdb"_s) + u'"');
    const QStringList before = QDir(shop.folder.path()).entryList();
    ui::prompts::expectAsk(question, false);
    openByMenu(window, shop.old);
    ui::prompts::expectAsk(question, true);
    ui::file_dialogs::expectFile(shop.old);
    ui::file_dialogs::expectFile({});
    window.findChild<QAction *>(u"mnuOpen"_s)->trigger();
    QCOMPARE(shop.connection.fileName(), shop.path(u"shop.cdb"_s));
    QCOMPARE(QDir(shop.folder.path()).entryList(), before);
}

void TestOldFiles::startWithAnOldFile()
{
    Shop shop;
    shop.settings.write(workspace::keys::mdbFileName, shop.old);
    {
        frmAMain window(shop.workspace, screenOpeners());
        ui::prompts::expectAsk(question, false);
        ui::prompts::expectInform(connectionFailed, ui::prompts::anyRemark);
        window.load({});
        QVERIFY(!shop.connection.isOpen());
    }
    QCOMPARE(shop.settings.text(workspace::keys::mdbFileName), shop.old);
    frmAMain window(shop.workspace, screenOpeners());
    QString seen;
    answerSummary(seen);
    ui::prompts::expectAsk(question, true);
    ui::file_dialogs::expectFile(shop.converted);
    window.load({});
    QVERIFY(!seen.isEmpty());
    QCOMPARE(shop.connection.fileName(), shop.converted);
    QCOMPARE(shop.settings.text(workspace::keys::mdbFileName), shop.converted);
}

void TestOldFiles::cannotBeRead()
{
    Shop shop;
    QFile file(shop.old);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(0x42) && file.write("secret") == 6);
    file.close();
    frmAMain window(shop.workspace, screenOpeners());
    window.load(u'"' + shop.path(u"shop.cdb"_s) + u'"');
    ui::prompts::expectInform(
        u"パスワードが設定されているため、変換できませんでした。"
        "以前のプログラムの環境でパスワードを解除してから、もう一度実行してください。"_s);
    openByMenu(window, shop.old);
    QCOMPARE(shop.connection.fileName(), shop.path(u"shop.cdb"_s));
}

// The earlier program's backup is converted like any of its files, and outlives the end of this one.
void TestOldFiles::oldBackup()
{
    Shop shop;
    QVERIFY(QFile::rename(shop.old, shop.path(u"BackupKanbalore.cdb"_s)));
    frmAMain window(shop.workspace, screenOpeners());
    window.load(u'"' + shop.path(u"shop.cdb"_s) + u'"');
    ui::prompts::expectAsk({}, false);
    window.findChild<QAction *>(u"mnuBackupOpen"_s)->trigger();
    QCOMPARE(shop.connection.fileName(), shop.path(u"shop.cdb"_s));
    QString seen;
    answerSummary(seen);
    ui::prompts::expectAsk({}, true);
    ui::file_dialogs::expectFile(shop.converted);
    window.findChild<QAction *>(u"mnuBackupOpen"_s)->trigger();
    QCOMPARE(shop.connection.fileName(), shop.converted);
    QVERIFY(window.close());
    const QDir folder(shop.folder.path());
    const QStringList aside = folder.entryList({u"BackupKanbalore 以前の形式*.cdb"_s});
    QCOMPARE(aside.size(), 1);
    QCOMPARE(contentOf(folder.filePath(aside.front())), contentOf(legacyFile));
    QVERIFY(contentOf(shop.path(u"BackupKanbalore.cdb"_s)).startsWith("SQLite"));
}

void TestOldFiles::missingSearchKeys()
{
    Shop shop;
    JetFile file(contentOf(legacyFile));
    for (const QString &name : {u"納品先名"_s, u"仕入先名"_s, u"依頼主名"_s, u"届先名"_s})
        file.rename(2, name + u"キー"_s, name + u"ギー"_s);
    QFile old(shop.old);
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write(file.bytes) == file.bytes.size());
    old.close();
    QVERIFY(bool(convertOldFile(shop.old, shop.converted, base::unwatched)));
    QVERIFY(bool(convertOldFile(legacyFile, shop.path(u"whole.cdb"_s), base::unwatched)));
    QVERIFY(shop.connection.open(shop.converted));
    shop.run(u"ATTACH '%1' AS whole"_s.arg(shop.path(u"whole.cdb"_s)));
    // The sample leaves customers' second names out of their keys.
    const QString differing = u"SELECT count(*) FROM %1 n JOIN whole.%1 w USING (%2) WHERE %3"_s;
    QCOMPARE(shop.value(differing.arg(u"納品先"_s, u"納品先ID"_s,
                                      u"n.納品先名2 IS NULL AND n.納品先名キー IS NOT w.納品先名キー"_s))
                 .toInt(),
             0);
    QCOMPARE(shop.value(differing.arg(u"仕入先"_s, u"仕入先ID"_s, u"n.仕入先名キー IS NOT w.仕入先名キー"_s))
                 .toInt(),
             0);
    QCOMPARE(shop.value(differing.arg(
                            u"発送マスター"_s, u"発送ID"_s,
                            u"n.依頼主名キー IS NOT w.依頼主名キー OR n.届先名キー IS NOT w.届先名キー"_s))
                 .toInt(),
             0);
}

void TestOldFiles::commandLine()
{
    Shop shop;
    QProcessEnvironment withoutScreen = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        withoutScreen.remove(QString::fromLatin1(name));
    QString output;
    const auto run = [&](const QStringList &arguments) {
        QProcess program;
        program.setProcessEnvironment(withoutScreen);
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.setWorkingDirectory(shop.folder.path());
        program.start(QStringLiteral(KANBALORE_PROGRAM), QStringList{u"--convert"_s} + arguments);
        program.waitForFinished();
        output = QString::fromUtf8(program.readAll());
        return program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
    };
    QCOMPARE(run({shop.old, shop.converted}), 0);
    QCOMPARE(output.count(u'\n'), 13);
    QVERIFY2(output.contains(u"\n納品先\t299\t299\n"_s), qPrintable(output));
    QVERIFY(shop.connection.open(shop.converted));
    shop.connection.close();
    const QByteArray before = contentOf(shop.converted);
    QCOMPARE(run({shop.old, shop.converted}), 1);
    QVERIFY(output.startsWith(u"同じ名前のファイルがある"_s));
    QCOMPARE(contentOf(shop.converted), before);
    QCOMPARE(run({shop.converted, shop.path(u"again.cdb"_s)}), 1);
    QCOMPARE(run({shop.path(u"nowhere.cdb"_s), shop.path(u"again.cdb"_s)}), 1);
    QCOMPARE(run({shop.old}), 2);
    QVERIFY(!QFile::exists(shop.path(u"again.cdb"_s)));
    for (const QString &name : {u":memory:"_s, u"file:new.cdb?mode=memory"_s}) {
        QCOMPARE(run({shop.old, name}), 0);
        QVERIFY2(QFileInfo(shop.folder.path() + u'/' + name).size() > 100'000, qPrintable(name));
    }

    // The name of a table that this program does not know.
    QByteArray content = contentOf(shop.old);
    const QString from = u"発送マスター"_s;
    const QString to = u"配送マスター"_s;
    const auto utf16 = [](const QString &text) {
        return QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    };
    QFile file(shop.old);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content.replace(utf16(from), utf16(to))) > 0);
    file.close();
    QCOMPARE(run({shop.old, shop.path(u"again.cdb"_s)}), 3);
    QVERIFY2(output.contains(u"「配送マスター」（225 行）"_s), qPrintable(output));
}

QTEST_MAIN(TestOldFiles)
#include "tst_old_files.moc"

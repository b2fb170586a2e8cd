#include "support/scripted_test.h"

#include "app/shop_files.h"

#include "app/main_window/sudden_end.h"
#include "db/transaction.h"
#include "slips/entry/frmOut.h"
#include "support/screen_driver.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QApplication>
#include <QComboBox>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProcess>
#include <QTest>
#include <QTextStream>

#include <csignal>
#include <cstddef>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int longestEnd = 5000; // ms; what a machine that shuts down waits at least

// What the operating system would kill, and what a logout asks: the session manager itself is never looked
// at.
void logOut()
{
    alignas(std::max_align_t) static char manager[64];
    QMetaObject::invokeMethod(qApp, "commitDataRequest", Qt::DirectConnection,
                              QGenericArgument("QSessionManager&", manager));
}

// The program with a slip open: one line is booked, the next one half typed.
int sellUntilTheEnd(const QString &folder, bool logsOut)
{
    ui::prompts::beginScript();
    ui::file_dialogs::beginScript();
    workspace::Settings settings(folder + u"/settings.ini"_s);
    db::Connection connection;
    workspace::Workspace workspace(connection, settings, folder);
    app::frmAMain window(workspace, app::screenOpeners());
    window.load(u"\"%1/shop.cdb\""_s.arg(folder));
    const app::SuddenEnd suddenEnd([&window](app::Ending ending) { window.endSilently(ending); });
    window.show();
    workspace.panel.employeeId = 1;
    slips::frmOut screen(workspace);
    ScreenDriver driver(&screen);
    screen.show();
    driver.box("txtKey1").setText(u"aite"_s);
    driver.press("Command1");
    driver.press("cmdMasterUpdate");
    for (const QString &product : {u"りんご"_s, u"みか"_s}) {
        driver.list("dbcShohin").setEditText(product);
        driver.box("txtCnt").setText(u"2"_s);
        driver.box("txtTanka").setText(u"150"_s);
        if (product == u"りんご"_s)
            driver.press("cmdSubAdd");
    }
    if (logsOut)
        logOut();
    QTextStream(stdout) << "ready" << Qt::endl;
    return QApplication::exec();
}

// The rows of a slip as they stand in \a fileName.
QString slipIn(const QString &fileName)
{
    db::PlainHandle file;
    if (!file.open(fileName))
        return u"unreadable"_s;
    db::PlainStatement row(file, "SELECT m.相手先ID, m.完了, s.商品名, s.金額 FROM 入出庫マスター m "
                                 "LEFT JOIN 入出庫サブ s ON s.ID = m.ID WHERE m.ID = 301 ORDER BY s.明細ID");
    QStringList rows;
    while (row && row.step() == SQLITE_ROW)
        rows << QStringList{row.text(0), row.text(1), row.text(2), row.text(3)}.join(u'|');
    return rows.join(u'\n');
}

QProcessEnvironment environmentWith(const QString &name, const QString &value)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(name, value);
    return environment;
}

} // namespace

/// The program ends without being closed: nothing booked is missing from the backup, nothing is added.
class TestSuddenEnd : public ScriptedTest
{
    Q_OBJECT

private slots:
    void openSlip_data();
    void openSlip();
    void logoutDuringAnAction();
    void programItself();

private:
    // A display of its own for \a program. \return whether it is there
    static bool startDisplay(QProcess &display, QProcess &program);
};

bool TestSuddenEnd::startDisplay(QProcess &display, QProcess &program)
{
    display.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s});
    if (!display.waitForReadyRead(30000))
        return false;
    QProcessEnvironment environment = environmentWith(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"DISPLAY"_s, u':' + QString::fromLatin1(display.readLine().trimmed()));
    program.setProcessEnvironment(environment);
    return true;
}

void TestSuddenEnd::openSlip_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("how");
    QTest::newRow("told to end") << SIGTERM << QString();
    QTest::newRow("terminal closed") << SIGHUP << QString();
    QTest::newRow("logged out") << SIGKILL << u"logout"_s;
    QTest::newRow("display lost") << 0 << u"display"_s;
}

void TestSuddenEnd::openSlip()
{
    QFETCH(int, signal);
    QFETCH(QString, how);
    Stage stage;
    change(stage.file, "INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー, 区分ID, 消費税区分) "
                       "VALUES (301, 'aite', 'aite', 1, 0)");
    QProcess display;
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    if (how == "display"_L1)
        QVERIFY2(startDisplay(display, program), "Xvfb does not start");
    program.start(QCoreApplication::applicationFilePath(), {u"--sell"_s, stage.shop.folder.path(), how});
    while (!program.canReadLine())
        QVERIFY(program.waitForReadyRead(60000));
    QCOMPARE(program.readLine(), "ready\n");

    QElapsedTimer time;
    time.start();
    if (signal != 0)
        ::kill(static_cast<pid_t>(program.processId()), signal);
    else
        display.kill();
    QVERIFY(program.waitForFinished(30000));
    QVERIFY2(time.elapsed() < longestEnd, qPrintable(QString::number(time.elapsed())));
    if (signal != SIGKILL)
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    display.kill();
    display.waitForFinished();

    const QString open = u"301|0|りんご|300.0"_s; // neither closed nor taxed
    QCOMPARE(slipIn(stage.file), open);
    QCOMPARE(slipIn(stage.shop.path(u"BackupKanbalore.cdb"_s)), open);
    const QDir backups(stage.shop.path(u"Backup"_s));
    const QStringList dated = backups.entryList({u"shop~*.cdb"_s}, QDir::Files);
    QCOMPARE(dated.size(), 1);
    QCOMPARE(slipIn(backups.filePath(dated.front())), open);
}

// Someone may stop the logout: the action goes on, and is wholly done or not at all.
void TestSuddenEnd::logoutDuringAnAction()
{
    Stage stage;
    stage.load();
    const app::SuddenEnd suddenEnd([&stage](app::Ending ending) { stage.window->endSilently(ending); });
    const base::Status done = db::atomically(stage.shop.connection, [&]() -> base::Status {
        stage.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID <= 10"_s);
        logOut();
        stage.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID <= 20"_s);
        return base::Error{u"refused"_s};
    });
    QVERIFY(!done);
    QCOMPARE(stage.customers(), 300);
    QVERIFY(!QFile::exists(stage.shop.path(u"BackupKanbalore.cdb"_s)));
    logOut();
    QCOMPARE(customersIn(stage.shop.path(u"BackupKanbalore.cdb"_s)), 300);
}

// As it is installed and started.
void TestSuddenEnd::programItself()
{
    Stage stage;
    QProcess program;
    program.setProcessEnvironment(environmentWith(u"XDG_CONFIG_HOME"_s, stage.shop.settingsFolder.path()));
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
    ::kill(static_cast<pid_t>(program.processId()), SIGTERM);
    QVERIFY(program.waitForFinished(30000));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(customersIn(stage.shop.path(u"BackupKanbalore.cdb"_s)), 300);
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.value(1) == "--sell"_L1)
        return sellUntilTheEnd(arguments.at(2), arguments.value(3) == "logout"_L1);
    TestSuddenEnd test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_sudden_end.moc"

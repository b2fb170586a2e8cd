#include "app/files/application_folder.h"
#include "app/files/foreign_name.h"
#include "app/files/old_file_conversion.h"
#include "app/files/start_options.h"
#include "app/main_window/appearance.h"
#include "app/main_window/frmAMain.h"
#include "app/main_window/frmSplash.h"
#include "app/main_window/parcels.h"
#include "app/main_window/pictures.h"
#include "app/main_window/sudden_end.h"
#include "db/connection.h"
#include "ui/prompts.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QApplication>
#include <QIcon>
#include <QTextStream>

#include <cstdlib>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

QStringList argumentsOf(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

// What needs no display. \return the exit code when that was all
std::optional<int> answerWithoutWindow(const app::StartOptions &options, int &argc, char *argv[])
{
    QTextStream out(stdout);
    if (options.help)
        out << app::usageText();
    else if (options.version)
        out << u"Kanbalore Database "_s << QStringLiteral(KANBALORE_VERSION) << '\n';
    else if (options.convert && options.problem.isEmpty()) {
        const QCoreApplication application(argc, argv);
        return static_cast<int>(app::convertAtCommandLine(options.convertFrom, options.convertTo));
    } else if (options.convert) {
        QTextStream(stderr) << options.problem << '\n' << app::usageText();
        return 2;
    }
    return options.help || options.version ? std::optional(0) : std::nullopt;
}

// The toolkit ends a program without a display by an abort that says little.
bool hasDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(name))
            return true;
    }
    return false;
#else
    return true;
#endif
}

// The toolkit aborts when the display it is told does not answer.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    QTextStream(stderr) << qFormatLogMessage(type, context, text) << '\n';
    if (type == QtFatalMsg) {
        QTextStream(stderr) << u"画面に接続できないため、起動できません。\n"_s;
        std::_Exit(1);
    }
}

// The arguments that the toolkit left, with files of an old name renamed where the clerk agrees.
QStringList readableArguments(int argc, char *argv[])
{
    QStringList arguments = QApplication::arguments().sliced(1);
    for (int i = 1; i < argc && i <= arguments.size(); ++i) {
        const QByteArray raw(argv[i]);
        const auto name = app::readableName(raw);
        if (!name ||
            !ui::prompts::ask(
                nullptr,
                u"ファイルの名前が UTF-8 でない文字コードで付けられているため、このままでは開けません。\n"
                "名前を「%1」に変更して開きますか。"_s.arg(*name)))
            continue;
        if (const base::Status renamed = app::giveName(raw, *name))
            arguments[i - 1] = *name;
        else
            ui::prompts::inform(nullptr, renamed.error().text);
    }
    return arguments;
}

} // namespace

int main(int argc, char *argv[])
{
    if (const auto exit = answerWithoutWindow(app::readStartOptions(argumentsOf(argc, argv)), argc, argv))
        return *exit;
    if (!hasDisplay()) {
        QTextStream(stderr) << u"画面がないため、起動できません。\n"_s;
        return 1;
    }

    const QtMessageHandler usual = qInstallMessageHandler(endWithoutDisplay);
    QApplication application(argc, argv);
    qInstallMessageHandler(usual);
    QApplication::setApplicationName(u"Kanbalore"_s);
    QApplication::setApplicationVersion(QStringLiteral(KANBALORE_VERSION));
    QGuiApplication::setDesktopFileName(u"kanbalore"_s);
    app::setUpAppearance(application);
    QApplication::setWindowIcon(QIcon(app::programIcon()));

    // The toolkit has taken its own options away by now.
    const app::StartOptions options = app::readStartOptions(readableArguments(argc, argv));
    if (!options.problem.isEmpty()) {
        QTextStream(stderr) << options.problem << '\n' << app::usageText();
        return 2;
    }

    app::frmSplash splash;
    splash.show();
    QApplication::processEvents();

    const app::ApplicationFolder folder =
        app::settleApplicationFolder(app::FolderPlaces::ofThisMachine(options.applicationFolder));
    if (!folder.problem.isEmpty())
        ui::prompts::inform(&splash, folder.problem);
    workspace::Settings settings;
    db::Connection connection;
    workspace::Workspace workspace(connection, settings, folder.path);
    app::frmAMain window(workspace, app::screenOpeners());
    app::joinParcels(window, workspace);
    window.load(options.commandLine);
    const app::SuddenEnd suddenEnd([&window](app::Ending ending) { window.endSilently(ending); });
    splash.close();
    window.show();
    return QApplication::exec();
}

#include "printing/queue/printer_settings.h"

#include <QProcess>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

#ifdef Q_OS_WIN
// The shell's own way to the printing preferences of a printer.
QStringList shellProgram(const QString &queue)
{
    return {u"rundll32"_s, u"printui.dll,PrintUIEntry"_s, u"/e"_s, u"/n"_s, queue};
}
#endif

// A name that reads like an option is none of ours to give.
QStringList withQueue(const QString &program, const QString &queue)
{
    return queue.startsWith(u'-') ? QStringList{program} : QStringList{program, queue};
}

} // namespace

QList<QStringList> printerSettingsPrograms(const QString &desktop, const QString &queue)
{
#ifdef Q_OS_WIN
    Q_UNUSED(desktop)
    return {shellProgram(queue)};
#else
    const QStringList gnome{u"gnome-control-center"_s, u"printers"_s};
    const QStringList common{u"system-config-printer"_s};
    const QList<QStringList> plasma{withQueue(u"configure-printer"_s, queue),
                                    {u"kcmshell5"_s, u"kcm_printer_manager"_s}};
    if (desktop.contains(u"KDE"_s))
        return plasma + QList{common, gnome};
    if (desktop.contains(u"GNOME"_s))
        return QList{gnome, common} + plasma;
    return QList{common, gnome} + plasma;
#endif
}

bool openPrinterSettings(const QString &queue)
{
    const auto programs = printerSettingsPrograms(qEnvironmentVariable("XDG_CURRENT_DESKTOP"), queue);
    for (const QStringList &program : programs) {
        const QString file = QStandardPaths::findExecutable(program.front());
        if (!file.isEmpty() && QProcess::startDetached(file, program.mid(1)))
            return true;
    }
    return false;
}

} // namespace printing

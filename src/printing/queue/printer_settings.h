#pragma once

#include <QList>
#include <QStringList>

// The system's own window of printers and their properties.
namespace printing
{

/// The programs that show it, each with its arguments, in the order to try them. \a desktop: the desktops
/// that the user works on, as XDG_CURRENT_DESKTOP names them ("ubuntu:GNOME").
QList<QStringList> printerSettingsPrograms(const QString &desktop, const QString &queue);

/// Starts the first of them that is there. \return whether one was started
bool openPrinterSettings(const QString &queue);

} // namespace printing

#pragma once

#include <QString>
#include <QUrl>

// The one seam to the other programs of the desktop: a file's associated program, the mail program, the
// browser.
namespace ui::desktop
{

/// Opens \a address with the program that the desktop has for it. \return whether one was started
bool open(const QUrl &address);

/// Opens a file with its associated program. \return whether one was started
bool openFile(const QString &fileName);

// --- For tests ---

/// From now on nothing is opened; each address is recorded instead.
void beginScript();
/// For the next address the desktop has no program.
void expectNoProgram();
/// The addresses since the last call, one a line.
QString takeOpened();

} // namespace ui::desktop

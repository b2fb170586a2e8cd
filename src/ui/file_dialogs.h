#pragma once

#include <QColor>
#include <QFont>
#include <QString>

#include <optional>

class QWidget;

// The one seam for the dialogs in which something is chosen: files, colours, fonts.
// Tests put choices into a queue, as with the message boxes.
namespace ui::file_dialogs
{

/// The file to open; empty when the user cancelled. The dialog begins in \a folder. \a filters as "text
/// (*.ext);;text (*.*)".
QString openFile(QWidget *parent, const QString &title, const QString &filters, const QString &folder = {});

/// The file to save to; empty when the user cancelled. Does not ask about overwriting: the caller does, in
/// its own words. \a suffix is appended to a name without one.
QString saveFile(QWidget *parent, const QString &title, const QString &filters, const QString &suffix,
                 const QString &proposal = {});

/// An existing folder; empty when the user cancelled. The dialog begins in the folder for documents.
QString chooseFolder(QWidget *parent, const QString &title);

/// A file to propose for something called \a title: in the folder for documents, without the characters that
/// some file system does not take.
QString proposedFile(const QString &title, const QString &suffix);

/// A colour, or nothing when the user cancelled.
std::optional<QColor> chooseColor(QWidget *parent, const QColor &first, const QString &title);

/// A font, or nothing when the user cancelled.
std::optional<QFont> chooseFont(QWidget *parent, const QFont &first, const QString &title);

// --- For tests ---

/// Puts all dialogs under script until the process ends; one that nobody scripted is cancelled and recorded.
void beginScript();
/// The next dialog for a file or a folder gives \a fileName; empty: cancelled.
void expectFile(const QString &fileName);
void expectColor(const std::optional<QColor> &color);
void expectFont(const std::optional<QFont> &font);
/// Where the last dialog for a file to open began.
QString lastFolder();
/// As ui::prompts::takeUnexpected().
QString takeUnexpected();

} // namespace ui::file_dialogs

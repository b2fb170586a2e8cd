#pragma once

#include "base/progress.h"
#include "base/result.h"

#include <QObject>
#include <QString>
#include <QStringList>

class QWidget;

namespace workspace
{
class Workspace;
}

namespace app
{

struct BackedUp;

/// The database file that is worked on, and the commands of the file menu that change it.
class DatabaseSession : public QObject
{
    Q_OBJECT

public:
    /// \a window: the parent of the boxes and file dialogs.
    DatabaseSession(workspace::Workspace &workspace, QWidget &window);

    /// Opens \a fileName at start, or a copy of it when it is a backup that stays as it is; tells when it
    /// cannot be opened.
    void start(const QString &fileName);

    /// The current file, also when it could not be opened.
    [[nodiscard]] QString fileName() const { return m_fileName; }
    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] bool isInitial() const;
    /// Whether there is a file to work in: it is open, and not the initial one.
    [[nodiscard]] bool isUsable() const { return isOpen() && !isInitial(); }
    /// Why the current file cannot be worked in; empty when it can.
    [[nodiscard]] QString reason() const;

    /// Whether there is a file to look after, open or not; never the initial one.
    [[nodiscard]] bool hasFile() const;

    void createNew();
    void openOther();
    /// Copies the file to a new name and goes on in the copy.
    void saveAs();
    void openBackup();
    void openRecent(const QString &fileName);
    /// Goes on in a copy of the backup \a fileName, which stays as it is.
    void openCopyOfBackup(const QString &fileName);
    /// Whether a backup is the current file, or the copy of one.
    [[nodiscard]] bool isBackup() const;

    /// The initial file is never worked in: tells so and has a new file made of it.
    void leaveInitialFile();

    /// Closes the file before a command works on it as a whole.
    void close();
    /// Opens the current file again.
    void reopen();
    /// Leaves the current file and goes on in \a fileName; tells when that cannot be opened, and stays.
    void switchTo(const QString &fileName);

    /// The copies at exit, the last one and the day's; tells when one fails.
    void backUp();
    /// The same at any time; tells when it is done too.
    void backUpNow();
    /// The same at once and without a box, for an end that nobody asked for.
    void backUpSilently();

signals:
    /// Another file is the current one, opened or not.
    void changed();
    /// The file was closed; nothing of it may be shown any more.
    void closed();

private:
    /// Asks for the file to write to, in the words of the commands that make one; empty: none.
    QString askForTarget(const QString &title);
    void openInstead(const QString &chosen);
    [[nodiscard]] QString reasonAndWaysOut() const;
    [[nodiscard]] bool isToBeCopied(const QString &fileName) const;
    bool connectTo(const QString &fileName);
    bool goTo(const QString &fileName);
    void refuse(const QString &fileName, const QString &why);
    void tellOfCopy(const QString &left);
    void backUpOnLeaving();
    bool tellOfBackup(const base::Result<BackedUp> &done);
    base::Result<BackedUp> bothBackups(const base::Progress &progress);
    [[nodiscard]] QString keptNameOf(const QString &fileName) const;

    workspace::Workspace &m_workspace;
    QWidget &m_window;
    QString m_fileName;
    QString m_reason;  // why it could not be opened
    QString m_refused; // why another one could not
};

} // namespace app

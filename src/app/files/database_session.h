#pragma once

#include <QObject>
#include <QString>

class QWidget;

namespace workspace
{
class Workspace;
}

namespace app
{

/// The database file that is worked on, and the commands of the file menu that change it.
class DatabaseSession : public QObject
{
    Q_OBJECT

public:
    /// \a window: the parent of the boxes and file dialogs.
    DatabaseSession(workspace::Workspace &workspace, QWidget &window);

    /// Opens \a fileName at start; tells when it cannot be opened.
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

    /// The initial file is never worked in: tells so and has a new file made of it.
    void leaveInitialFile();

    /// Closes the file before a command works on it as a whole.
    void close();
    /// Opens the current file again.
    void reopen();
    /// Makes the closed \a fileName the current file and opens it; tells when it cannot be opened.
    void switchTo(const QString &fileName);

    /// The copies at exit, the last one and the day's; tells when one fails.
    void backUp();

signals:
    /// Another file is the current one, opened or not.
    void changed();
    /// The file was closed; nothing of it may be shown any more.
    void closed();

private:
    /// Asks for the file to write to, in the words of the commands that make one; empty: none.
    QString askForTarget(const QString &title);
    void openInstead(const QString &chosen);
    bool connectTo(const QString &fileName);

    workspace::Workspace &m_workspace;
    QWidget &m_window;
    QString m_fileName;
    QString m_reason; // why it could not be opened
};

} // namespace app

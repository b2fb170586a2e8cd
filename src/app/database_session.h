#pragma once

#include <QObject>
#include <QString>

class QWidget;

namespace app
{

class Workspace;

/// The database file that is worked on, and the commands of the file menu that change it.
class DatabaseSession : public QObject
{
    Q_OBJECT

public:
    /// \a window: the parent of the boxes and file dialogs.
    DatabaseSession(Workspace &workspace, QWidget &window);

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

    void createNew();
    void openOther();
    void openBackup();

    /// The initial file is never worked in: tells so and has a new file made of it.
    void leaveInitialFile();

    /// The copy at exit; tells when it fails.
    void backUp();

signals:
    /// Another file is the current one, opened or not.
    void changed();
    /// The file was closed; nothing of it may be shown any more.
    void closed();

private:
    void close();
    void switchTo(const QString &fileName);
    bool connectTo(const QString &fileName);

    Workspace &m_workspace;
    QWidget &m_window;
    QString m_fileName;
    QString m_reason; // why it could not be opened
};

} // namespace app

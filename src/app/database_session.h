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
    /// Why the current file could not be opened; empty when it is open.
    [[nodiscard]] QString reason() const { return m_reason; }
    [[nodiscard]] bool isInitial() const;

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
    QString m_reason;
};

} // namespace app

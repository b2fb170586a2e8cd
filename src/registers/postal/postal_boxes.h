#pragma once

#include <QObject>

class QLineEdit;

namespace workspace
{
class Workspace;
}

namespace registers
{

/// Helps to fill in the two boxes 郵便番号 and 住所1 of a register from each other. Lives as long as \a zip.
///
/// Leaving 郵便番号 with a complete code just typed, while 住所1 is empty, fills in the area's address, or
/// lists the areas to choose from when the code has several. An address that stands there is never touched.
class PostalBoxes : public QObject
{
    Q_OBJECT

public:
    PostalBoxes(workspace::Workspace &workspace, QLineEdit *zip, QLineEdit *address);

    /// From now on leaving 住所1 after its text was changed fills in its code, without a question. A code
    /// that stands there is never emptied, and stays when it is another one of the same area.
    void fillOnLeavingAddress();

    /// What the register's button 郵便番号 does: fills in the code of 住所1, or opens the search window on it
    /// when the address alone does not say.
    void lookUp();

private:
    void addressLeft();
    void zipLeft();
    void fillAddress(const QString &code, const QString &address);
    void offer(const QString &code, const QStringList &addresses);

    workspace::Workspace &m_workspace;
    QLineEdit *m_zip;
    QLineEdit *m_address;
};

} // namespace registers

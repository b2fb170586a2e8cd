#pragma once

#include <QObject>

class QAbstractButton;
class QLineEdit;

namespace ui
{
class LeaveWatch;
}

namespace workspace
{
class Workspace;
}

namespace registers
{

struct PostalData;

/// Helps to fill in the boxes 郵便番号 and 住所1 of a register from each other, as long as they can be typed
/// into. Lives as long as the first. F4 in the boxes searches the address in the window of the postal codes.
///
/// Leaving 郵便番号 with a complete code just typed, while 住所1 is empty, fills in the area's address, or
/// lists the areas to choose from when the code has several; one that is too wide for its line goes on in
/// 住所2. An address that stands there is never touched.
class PostalBoxes : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        QLineEdit *zip;
        QLineEdit *address;
        QLineEdit *address2; // takes what of a wide address has no room in the first
        /// Remarks that a code that was looked up is the one of a whole city, and opens the window as F4
        /// does. Hidden at other times.
        QAbstractButton *remark;
    };
    PostalBoxes(workspace::Workspace &workspace, const Controls &controls);

    /// From now on leaving 住所1 fills in its code where there is none. After its text was changed another
    /// code that stands there is asked about: it may well be the right one, which an office or a part of a
    /// town has for itself. It stays without a question when the address alone says no more than it, and is
    /// never emptied.
    void fillOnLeavingAddress();

    /// Does now what leaving the boxes leaves to do, as before their row is saved.
    void settle();
    /// Another row stands in the boxes now; what was typed into the one before is no concern of it.
    void forget();

    /// What the register's button 郵便番号 does: fills in the code of 住所1, or opens the search window on it
    /// when the address alone does not say.
    void lookUp();
    /// Opens the search window on 住所1; the code that is chosen there is filled in.
    void searchInWindow();

private:
    void fillCode(const PostalData &data, const QString &code);
    void fillEmptyCode();
    void addressLeft();
    void zipLeft();
    [[nodiscard]] QString codeOfAddress(const PostalData &data) const;
    [[nodiscard]] bool mayReplace(const PostalData &data, const QString &standing, const QString &code) const;
    [[nodiscard]] QStringList addressesOfTypedCode();
    QLineEdit *setAddress(const QString &address);
    void fillAddress(const QString &code, const QString &address);
    void offer(const QString &code, const QStringList &addresses);

    workspace::Workspace &m_workspace;
    QLineEdit *m_zip;
    QLineEdit *m_address;
    QLineEdit *m_address2;
    QAbstractButton *m_remark;
    ui::LeaveWatch *m_zipWatch;
    ui::LeaveWatch *m_addressWatch = nullptr; // where leaving 住所1 looks its code up
};

} // namespace registers

#pragma once

#include "masters/master_editor.h"

namespace masters
{

/// The own company: the sender on every printed form.
class frmMyco : public MasterEditor
{
    Q_OBJECT

public:
    explicit frmMyco(workspace::Workspace &workspace, QWidget *parent = nullptr);

    /// What looks up postal codes is a house above; it is put behind these by whoever opens the screen.
    struct PostalControls
    {
        QLineEdit *zip;
        QLineEdit *address1;
        QLineEdit *address2;
        QPushButton *lookUp;
        QPushButton *remark; // hidden at first
    };
    [[nodiscard]] const PostalControls &postalControls() const { return m_postal; }

protected:
    bool mayStore() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// A box and the form in which its text is stored.
    struct FormedBox
    {
        QLineEdit *box;
        QString (*stored)(const QString &typed);
    };

    void watchForms(const QList<FormedBox> &boxes);
    static void bringIntoForm(const FormedBox &formed);

    QList<FormedBox> m_formed;
    QLineEdit *m_registration = nullptr;
    PostalControls m_postal = {};
};

} // namespace masters

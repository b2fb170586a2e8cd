#pragma once

#include "masters/name_lists.h"
#include "ui/record_panel.h"

#include <QVariant>
#include <QWidget>

#include <memory>
#include <optional>
#include <vector>

namespace db
{
class Connection;
class Recordset;
} // namespace db

namespace workspace
{
class Workspace;
}

namespace Ui
{
class CustomerPanel;
}

namespace ui
{
class LeaveWatch;
}

namespace registers
{

class PostalBoxes;

/// The boxes of one customer, bound to the current row of a record set: what is typed edits the row, and a
/// box that is left brings its text into the form in which it is stored.
class CustomerPanel : public QWidget
{
    Q_OBJECT

public:
    explicit CustomerPanel(QWidget *parent = nullptr);
    ~CustomerPanel() override;

    /// To be called once, before the record set is opened.
    void bind(db::Connection &connection, db::Recordset &customers);

    /// Lets the postal code and the address fill each other in.
    void connectPostalCodes(workspace::Workspace &workspace);

    /// Reads the categories that can be chosen.
    base::Status loadCategories();
    [[nodiscard]] const std::vector<masters::Entry> &categories() const { return m_categories; }

    /// Shows the current row again.
    void showRow();

    /// Does now what leaving the boxes leaves to do, as before the row is saved.
    void settle();
    /// Never does it: another customer stands in them.
    void forget();

    /// Whether the customer was changed since the row was shown; the category, which is stored when it is
    /// chosen, counts among what was changed.
    [[nodiscard]] bool canTakeBack() const;
    /// Takes it all back. A category that cannot be stored again is told.
    void takeBack();
    /// What the row holds now was saved: there is no way back behind it.
    void saved() { m_categoryBefore.reset(); }

    /// Makes ready for typing a new customer.
    void beginEntry();

    /// Puts the cursor into the box of \a column.
    void focusColumn(const QString &column);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fillDropDowns();
    void connectReading();
    void connectForms();
    void showCategory();
    void showHonorific();
    void chooseHonorific(int index);
    void chooseCategory(int index);
    void warnOfSharedCode();

    std::unique_ptr<Ui::CustomerPanel> m_ui;
    std::unique_ptr<ui::RecordPanel> m_boxes;
    std::vector<masters::Entry> m_categories;
    PostalBoxes *m_postal = nullptr;
    ui::LeaveWatch *m_codeWatch = nullptr;
    db::Connection *m_connection = nullptr;
    db::Recordset *m_customers = nullptr;
    qint64 m_shown = 0;                       // whose row is shown
    std::optional<QVariant> m_categoryBefore; // of that customer before another one was chosen here
};

} // namespace registers

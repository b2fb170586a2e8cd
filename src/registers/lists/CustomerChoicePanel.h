#pragma once

#include "registers/lists/customer_ticks.h"

#include <QWidget>

#include <memory>

namespace Ui
{
class CustomerChoicePanel;
}

namespace workspace
{
class Workspace;
}

namespace registers
{

/// The boxes of the customer search and the list of the customers found, each with a tick: how a screen that
/// works on many customers at once is told which ones.
class CustomerChoicePanel : public QWidget
{
    Q_OBJECT

public:
    explicit CustomerChoicePanel(QWidget *parent = nullptr);
    ~CustomerChoicePanel() override;

    /// To be called once, before the screen is shown.
    void bind(workspace::Workspace &workspace, CustomerTicks::Guard guard);

    [[nodiscard]] CustomerTicks &ticks() { return *m_ticks; }
    [[nodiscard]] const CustomerTicks &ticks() const { return *m_ticks; }

    /// Runs the last search again, after the customers have changed.
    void searchAgain();

signals:
    void choiceChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void search();
    bool find();
    void setUpColumns();
    void sortBy(int column);
    void showSorting();
    void loadCategories();
    void showCount();

    std::unique_ptr<Ui::CustomerChoicePanel> m_ui;
    workspace::Workspace *m_workspace = nullptr;
    std::unique_ptr<CustomerTicks> m_ticks;
    CustomerQuery m_query; // the last one
    int m_sortedBy = -1;   // a column; -1: in the order of the search
    Qt::SortOrder m_direction = Qt::AscendingOrder;
    bool m_shown = false;
};

} // namespace registers

#pragma once

#include "registers/lists/customer_ticks.h"

#include <QWidget>

#include <memory>

namespace Ui
{
class CustomerChoicePanel;
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
    void bind(db::Connection &connection, CustomerTicks::Guard guard);

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
    void showCount();

    std::unique_ptr<Ui::CustomerChoicePanel> m_ui;
    db::Connection *m_connection = nullptr;
    std::unique_ptr<CustomerTicks> m_ticks;
    CustomerQuery m_query; // the last one
    bool m_shown = false;
};

} // namespace registers

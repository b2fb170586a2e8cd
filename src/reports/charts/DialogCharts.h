#pragma once

#include "reports/charts/chart_data.h"
#include "ui/screen.h"

#include <memory>

namespace Ui
{
class DialogCharts;
}

namespace reports
{

class ChartView;

/// Charts of what was sold and received, or bought and paid: of all counterparts, or of one. It opens with
/// the twelve months that end with the present one. What the bars are of stands below them as a table.
class DialogCharts : public ui::Screen
{
    Q_OBJECT

public:
    /// Of all customers.
    explicit DialogCharts(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogCharts() override;

    /// Shows those of \a party until \a until; \a counterpart: whose can be shown alone, and \a alone whether
    /// they are to begin with.
    void openCharts(book::Party party, const QDate &until,
                    const std::optional<book::CounterpartKey> &counterpart, bool alone);

protected:
    void becameActive() override;

private:
    void fillKinds();
    void connectControls();
    [[nodiscard]] ChartQuery query() const;
    void goBy(int years);
    void refresh();
    void showData(ChartData figures);
    void print();
    void savePicture();

    const std::unique_ptr<Ui::DialogCharts> m_ui;
    ChartView *m_chart;
    book::Party m_party = book::Party::Customer;
    std::optional<book::CounterpartKey> m_counterpart;
    ChartData m_data; // what is shown
    bool m_hasRead = false;
};

} // namespace reports

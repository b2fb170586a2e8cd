#pragma once

#include "reports/bills/monthly_bills.h"
#include "ui/screen.h"

#include <functional>
#include <memory>

class QLabel;
class QLineEdit;

namespace Ui
{
class frmOutBillList;
}

namespace reports
{

/// The monthly list of bills: what each customer owed before a period, paid, bought and owes now, and how old
/// that is. It opens with the current month, and leads from its rows to bills and ledgers.
class frmOutBillList : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmOutBillList(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmOutBillList() override;

    /// What opens the settings of the printer from a bill; see frmOutBill.
    void setPrinterSettings(std::function<void(QWidget *)> open);

protected:
    void becameActive() override;

private:
    void connectControls();
    void showMode();
    [[nodiscard]] MonthlyBillsQuery query() const;

    void recompute();
    base::Status read();
    void showList(base::Report report);
    void showState();
    void showSums();
    void showOpening();
    void openBill();
    void openLedger();
    void openCharts();

    const std::unique_ptr<Ui::frmOutBillList> m_ui;
    std::vector<std::pair<QLabel *, QLineEdit *>> m_sums;
    MonthlyBillsQuery m_shown; // what the rows are of
    bool m_hasRead = false;
    std::function<void(QWidget *)> m_openPrinterSettings;
};

} // namespace reports

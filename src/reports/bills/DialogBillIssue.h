#pragma once

#include "reports/bills/bill_run.h"
#include "reports/bills/bill_ticks.h"
#include "ui/screen.h"

#include <memory>

namespace Ui
{
class DialogBillIssue;
}

namespace reports
{

/// 「一括発行」: the bills of all customers of a closing day in one list, their tax booked at once, and those
/// that are ticked printed, a job each, or saved, a file each.
class DialogBillIssue : public ui::Screen
{
    Q_OBJECT

public:
    explicit DialogBillIssue(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogBillIssue() override;

    /// Stands at \a closingDay, 0 the last of the month, and lists its last whole period.
    void openClosingDay(int closingDay);

protected:
    void becameActive() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setUpGrid();
    void connectControls();
    void connectActions();

    // The list.
    [[nodiscard]] book::Period period() const;
    void presetPeriod();
    void takeTypedPeriod();
    void followPeriod();
    void list();
    void renew();
    struct Listed
    {
        std::vector<CustomerBill> bills;
        IssuedBills issued; // of them
    };
    base::Result<Listed> compute();
    void showState();

    // The tax.
    bool bookTax(const std::vector<CustomerBill> &bills);
    void undoTax();
    /// Asks where \a bills lack the tax that is due. \return whether to go on with them
    bool settleTax(const std::vector<CustomerBill> &bills);

    // The papers.
    [[nodiscard]] std::vector<CustomerBill> chosen();
    void preview();
    void print();
    void savePdf();
    void run(const std::vector<CustomerBill> &bills, const QString &what, const IssueBill &issue);
    void tellOutcome(const BillRunOutcome &outcome, const std::vector<CustomerBill> &bills,
                     const QString &what);
    void printTransferForms(const std::vector<CustomerBill> &bills, const std::vector<qint64> &issued);

    const std::unique_ptr<Ui::DialogBillIssue> m_ui;
    BillTicks m_bills;
    std::vector<BillTaxSlip> m_booked; // by the last booking
    bool m_periodIsTyped = false;
    bool m_listsWhenShown = false;
    bool m_presets = false; // the boxes of the period are being filled
};

} // namespace reports

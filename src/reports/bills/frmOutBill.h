#pragma once

#include "db/recordset.h"
#include "reports/bills/bill.h"
#include "reports/bills/bill_tax.h"
#include "ui/screen.h"

#include <functional>
#include <memory>

namespace Ui
{
class frmOutBill;
}

namespace reports
{

/// Issues bills: works out what a customer owed before a period, bought and paid in it and is to pay now,
/// shows the slips as a statement, books the tax that comes with the bill, and prints it. What it shows is
/// always of the customer and the period in its boxes.
class frmOutBill : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmOutBill(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmOutBill() override;

    /// What opens the settings of the printer; without it they are not offered.
    void setPrinterSettings(std::function<void(QWidget *)> open);

    /// Shows the bill of \a customer for \a period.
    void openBill(qint64 customer, const book::Period &period);

protected:
    bool mayClose() override;

private:
    // How what kept a bill from being computed is told; ErrorsInBox: that there are no slips in the line
    // alone.
    enum class Telling { InBox, ErrorsInBox, InLine };

    void connectControls();
    void connectDates();
    [[nodiscard]] book::Period period() const;

    // The customer.
    void search();
    void takeTypedId();
    void listClosingDay();
    void issueAll();
    void next();
    void followList();
    void showCustomer(qint64 customer);
    void showAnew();
    void choose(qint64 customer);
    void showAddress();

    // The period.
    void presetPeriod(int closingDay);
    void returnToClosingDay();
    void followPeriod();

    // The bill.
    bool compute(Telling telling);
    void showNothing(const QString &message);
    void showFigures();
    void showState();
    void openSlip();
    void choosePrinter();
    void showPrinter();

    // Its tax.
    void suggestTax();
    void suggestDate();
    void checkNumber();
    bool bookTax();
    bool mayBook(const Bill &present, const book::NewSlip &slip, double tax);
    [[nodiscard]] book::NewSlip newTaxSlip(double taxRate) const;
    void cancelTax();
    void setEntered(std::optional<BillTaxSlip> slip);
    [[nodiscard]] bool taxIsTyped() const;

    // Its paper.
    void print();
    bool isReadyToPrint();
    bool settleTax();

    const std::unique_ptr<Ui::frmOutBill> m_ui;
    std::function<void(QWidget *)> m_openPrinterSettings;
    db::Recordset m_found;
    qint64 m_customer = 0;      // 0: none is chosen
    std::optional<Bill> m_bill; // as last computed
    bool m_periodIsTyped = false;
    std::vector<qint64> m_list; // the customers of a closing day
    std::size_t m_place = 0;    // of the one among them that was last shown
    std::optional<BillTaxSlip> m_entered;
    QString m_suggestion; // in the tax's box
};

} // namespace reports

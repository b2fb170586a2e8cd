#pragma once

#include "db/recordset.h"
#include "reports/purchases/purchase_tax.h"
#include "ui/screen.h"

#include <memory>

namespace Ui
{
class frmInTax;
}

namespace reports
{

/// Enters the tax that a supplier's bill adds to the purchases of a period. Not one of the SlipScreens: the
/// slip has one line, and it is stored as a whole.
class frmInTax : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmInTax(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmInTax() override;

protected:
    bool mayClose() override;

private:
    void connectControls();
    [[nodiscard]] book::Period period() const;

    void search();
    void showSupplier();
    void followPeriod();
    void suggestDate();
    bool refresh();
    void showFigures(bool chosen);
    void suggestTax();
    void goOnWithEntry();

    void checkNumber();
    void enterTax();
    bool mayEnter(const book::NewSlip &slip);
    [[nodiscard]] book::NewSlip newSlip(double taxRate) const;
    void next();
    void cancelSlip();
    void setEntered(std::optional<TaxSlip> slip);

    const std::unique_ptr<Ui::frmInTax> m_ui;
    db::Recordset m_found;
    SupplierPurchases m_purchases; // of the supplier and period shown
    std::optional<TaxSlip> m_entered;
    QString m_suggestion; // in the amount's box
};

} // namespace reports

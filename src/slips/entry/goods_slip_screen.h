#pragma once

#include "book/tax.h"
#include "slips/entry/line_entry.h"
#include "slips/entry/slip_screen.h"
#include "ui/slip_grid_model.h"

class QCheckBox;

namespace slips
{

/// Wherein the goods-slip screens differ.
struct GoodsSlipDescription
{
    SlipDescription slip;
    LineEntry::Names products;
    EmptyPriceRule emptyPrice;
    bool showsIncludedTax;
    bool hasAmountBox = false; // Text5 is the hidden box of a line's amount
    bool isTaxed = true;       // whether closing adds a tax line where one is due
};

/// What the sales and the estimate screen have in common; \a kind is one of theirs.
GoodsSlipDescription goodsForCustomer(const book::SlipKind &kind);

/// The screens that enter slips of goods. A screen's own class sets up its form and adds what it alone has.
class GoodsSlipScreen : public SlipScreen
{
    Q_OBJECT

protected:
    GoodsSlipScreen(workspace::Workspace &workspace, QWidget *parent, GoodsSlipDescription description);

    [[nodiscard]] book::TaxClass taxClass() const;
    [[nodiscard]] bool inclusive() const;

    void setUpLines() override;
    void counterpartShown(bool chosen) override;
    void beginLines() override;
    void focusLine() override;
    [[nodiscard]] bool lineIsTyped() const override;
    void clearLines() override;
    base::Result<QString> closeSlip() override;
    bool mayClose() override;

private:
    void showPreviousLines();
    void addLine();
    void removeLine();
    void showTotals();
    void showTax();
    void foretellTax();
    [[nodiscard]] bool addsTax() const;

    GoodsSlipDescription m_description;
    ui::SlipGridModel m_lines;
    ui::SlipGridModel m_previous;
    LineEntry *m_entry = nullptr;
    std::vector<book::TaxableAmount> m_goods; // of the lines

    QLineEdit *m_taxClass = nullptr;
    QLabel *m_taxClassName = nullptr;
    QLineEdit *m_totalBox = nullptr;
    QLineEdit *m_tax = nullptr;
    QLineEdit *m_taxFlag = nullptr;
    QLineEdit *m_memo = nullptr;
    QCheckBox *m_inclusive = nullptr;
    ui::Grid *m_lineGrid = nullptr;
    ui::Grid *m_previousGrid = nullptr;
};

} // namespace slips

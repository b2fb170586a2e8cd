#pragma once

#include "book/shown_totals.h"
#include "book/slip_store.h"
#include "book/tax.h"
#include "slips/documents/paper_state.h"
#include "slips/entry/goods_controls.h"
#include "slips/entry/slip_screen.h"
#include "ui/slip_grid_model.h"

namespace slips
{

/// Wherein the goods-slip screens differ.
struct GoodsSlipDescription
{
    SlipDescription slip;
    LineEntry::Products products;
    EmptyPriceRule emptyPrice;
    bool showsIncludedTax;
    bool takesReturns = false; // goods come back on slips like these
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

    /// To be called at the end of the constructor of the screen's own class, after setupUi().
    void setUpGoods(const GoodsControls &controls);

    /// Shows the slip's paper, where it has one. \return whether it was printed
    virtual bool showPaper() { return false; }
    /// What is remarked on the paper.
    [[nodiscard]] virtual QString paperRemarks() const;
    /// Prints the slip, and remembers what its paper says.
    void print();

    [[nodiscard]] book::TaxClass taxClass() const;
    [[nodiscard]] bool inclusive() const;

    void setUpLines() override;
    void counterpartShown(bool chosen) override;
    [[nodiscard]] std::optional<bool> pricesIncludeTax() const override;
    void beginLines() override;
    void focusLine() override;
    [[nodiscard]] bool lineIsTyped() const override;
    void clearLines() override;
    bool storeRemark() override;
    void slipEnds() override;
    [[nodiscard]] QString cancelRemark() const override;
    [[nodiscard]] int lineCount() const override;
    [[nodiscard]] bool taxIsDue() const override;
    base::Result<QString> closeSlip() override;

private:
    void showPreviousLines();
    void offerTaxes();
    void addLine();
    base::Status addTo(db::Connection &file, const book::GoodsLine &line,
                       std::vector<book::GoodsLine> &added);
    std::optional<book::GoodsLine> asReturned(book::GoodsLine line);
    bool chooseOriginal(const QString &product);
    bool mayComeBackAsItIs(const book::GoodsLine &line);
    [[nodiscard]] bool asksForOriginal(const book::GoodsLine &line) const;
    void showAdded(const std::vector<book::GoodsLine> &lines);
    void removeLine();
    base::Result<book::SlipSums> readSums();
    void showTotals(base::Result<book::SlipSums> sums);
    void showTax();
    void showWithTax(const book::ShownTotals &shown);
    void foretellTax();
    void keepInclusive();
    base::Status checkTaxClass();
    void showTaxClassAnew();
    [[nodiscard]] base::Result<PaperState> paperNow();
    void showAndRemember();
    [[nodiscard]] bool addsTax() const;

    GoodsSlipDescription m_description;
    ui::SlipGridModel m_lines;
    ui::SlipGridModel m_previous;
    LineEntry *m_entry = nullptr;
    std::vector<book::TaxableAmount> m_taxable; // of the lines
    double m_total = 0;                         // yen
    GoodsControls m_goods = {};
    QString m_storedRemark; // of the open slip
    std::optional<PaperState> m_printed;
    double m_slipRate = 0;          // percent
    bool m_originalIsKnown = false; // whether there is one, or that there is none
    bool m_hasReturned = false;     // goods come back on the slip
    std::vector<int> m_entered;     // lines that each line typed has become
    qint64 m_original = 0;          // ID of the slip that goods come back of; 0: none
};

} // namespace slips

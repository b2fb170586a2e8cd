#pragma once

#include "book/tax_terms.h"
#include "ui/screen.h"

#include <memory>
#include <vector>

namespace Ui
{
class DialogTaxRates;
}

namespace masters
{

/// The table of consumption-tax rates. A person says here what the law is: the program switches no rate on by
/// itself. Slips that are stored keep the rates that they have.
class DialogTaxRates : public ui::Screen
{
    Q_OBJECT

public:
    explicit DialogTaxRates(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogTaxRates() override;

protected:
    bool mayClose() override;

private:
    void connectControls();
    /// Reads the table anew and puts the current row at that of \a id. \return whether it could be read
    bool read(qint64 id);
    /// Fills the boxes from the current row.
    void showCurrent();
    /// The row in the boxes; its last box may hold no number.
    [[nodiscard]] book::TaxTerm typed() const;
    /// Shows \a term in the boxes.
    void show(const book::TaxTerm &term);
    void rowChosen();
    void begin();
    bool store();
    void remove();
    /// Whether the boxes may be filled anew; what is typed in them is settled before.
    bool settle();
    bool mayLeaveGap(const std::vector<book::TaxTerm> &after);
    bool mayMakeRoom(const std::vector<book::TaxTerm> &others);
    void showStates();

    const std::unique_ptr<Ui::DialogTaxRates> m_ui;
    std::vector<book::TaxTerm> m_terms; // as stored
    book::TaxTerm m_shown;              // what the boxes were filled with
    bool m_filling = false;
};

} // namespace masters

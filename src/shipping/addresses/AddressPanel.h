#pragma once

#include "printing/purposes.h"
#include "shipping/addresses/address_form.h"

#include <QWidget>

#include <memory>

namespace Ui
{
class AddressPanel;
}

namespace printing
{
class OffsetBox;
}

namespace workspace
{
class Workspace;
}

namespace shipping
{

class LabelPlaceBox;

/// What addresses are printed on, how they are written, and where on the paper: common to one address and to
/// many. What is chosen is kept by store().
class AddressPanel : public QWidget
{
    Q_OBJECT

public:
    explicit AddressPanel(QWidget *parent = nullptr);
    ~AddressPanel() override;

    /// To be called once, before the screen is shown. \a purpose: whose printer and font it shows.
    void bind(workspace::Workspace &workspace, printing::Purpose purpose);

    /// What is chosen now, with the own company as it is registered.
    [[nodiscard]] base::Result<AddressSetup> setup() const;
    [[nodiscard]] AddressChoice choice() const;
    /// The printer that was chosen by hand; empty: the purpose's own.
    [[nodiscard]] QString printer() const;
    /// Keeps what is chosen. \return whether it may be kept: offsets that are far off are asked about
    bool store();
    /// Shows the next free place after a print.
    void reloadPlaces();

private:
    void fillPrinters();
    void showSettings();
    void choosePaper();
    void showStates();
    void chooseFont();
    [[nodiscard]] AddressStyle style() const;

    std::unique_ptr<Ui::AddressPanel> m_ui;
    workspace::Workspace *m_workspace = nullptr;
    printing::Purpose m_purpose = printing::Purpose::Addresses;
    LabelPlaceBox *m_places = nullptr;
    printing::OffsetBox *m_right = nullptr;
    printing::OffsetBox *m_down = nullptr;
    bool m_printerIsChosen = false; // by hand; a stored one that is gone stays stored otherwise
};

} // namespace shipping

#pragma once

#include "db/recordset.h"
#include "shipping/slips/ShipmentPanel.h"
#include "shipping/slips/slip_printer.h"
#include "ui/screen.h"
#include "workspace/workspace.h"

#include <functional>

class QBoxLayout;
class QLabel;
class QPushButton;

namespace ui
{
class Grid;
}

namespace shipping
{

/// Wherein the screens that enter slips one after the other differ.
struct SlipEntryKind
{
    KeptKeys kept;
    const workspace::SettingKey &windowState;
    bool workspace::Panel::*notice; // whether ゆうパック slips ask for お届け通知
    Sending sending;
    const char16_t *nothingFound; // question after a search without result
};

/// Their controls, which each has in a form of its own.
struct SlipEntryControls
{
    QLineEdit *key;
    QPushButton *search;
    ui::Grid *found;
    QPushButton *registerConsignee;
    ShipmentPanel *panel;
    QPushButton *print;
    QPushButton *preview;
    QPushButton *clear;
    QLabel *message;
    QBoxLayout *head; // beside which labels show their sheet
};

template <class Form>
SlipEntryControls slipEntryControls(const Form &form)
{
    return {form.txtKey1,  form.Command5,   form.DataGrid1, form.Command8,   form.panel,
            form.Command2, form.cmdPreview, form.cmdClear,  form.lblMessage, form.layoutHead};
}

class LabelPlaceBox;

/// Enters, prints and records shipping slips, one after the other: a customer is searched for and fills one
/// of the two parties in, the slip is completed, printed and kept in the history, and the next one begins
/// with what is usually the same on it.
class SlipEntryScreen : public ui::Screen
{
    Q_OBJECT

public:
    /// What the printer's name opens.
    void setPrinterSettings(std::function<void(QWidget *)> open);

protected:
    SlipEntryScreen(workspace::Workspace &workspace, QWidget *parent, const SlipEntryKind &kind);

    /// To be called at the end of the constructor of the screen's own class, after setupUi().
    void setUpEntry(const SlipEntryControls &controls);

    /// The customer \a id was chosen from the list.
    virtual void fillIn(const Party &customer, qint64 id) = 0;
    /// Whom fillIn() would write over, if he was typed there: the name, empty for nobody.
    [[nodiscard]] virtual QString typedParty() const = 0;
    /// Where the work goes on after fillIn().
    virtual void goOn();
    /// The panel holds the next slip, whose consignee is to be found.
    virtual void nextBegins() = 0;
    /// A search found nobody, and the clerk types instead.
    virtual void typeInstead() = 0;

    [[nodiscard]] ShipmentPanel &panel() { return *m_controls.panel; }
    [[nodiscard]] const ShipmentPanel &panel() const { return *m_controls.panel; }
    /// Shows \a shipment as one to be printed that nobody has typed yet. Its remarks are not kept.
    void begin(const Shipment &shipment);
    void clearSearch();
    void say(const QString &text);
    /// Whether what was typed as one of the parties may be replaced by \a by; asked where something was.
    [[nodiscard]] bool mayWriteOver(const QString &by);

    bool mayClose() override;
    void becameActive() override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void showPlaces();
    void search();
    void showFound();
    void take(const Party &customer, qint64 id);
    void letChoose();
    [[nodiscard]] QStringList foreignRemarks(const Shipment &slip) const;
    void beginNext();
    void registerConsignee();
    void takeRegistered(qint64 customer);
    [[nodiscard]] bool isPrintable();
    [[nodiscard]] std::optional<Shipment> checked();
    bool print();
    void showPreview();
    void giveUp();
    void store();

    SlipEntryKind m_kind;
    SlipEntryControls m_controls = {};
    db::Recordset m_found;
    SlipPrinter m_printer;
    LabelPlaceBox *m_place = nullptr;
    bool m_keepsRemarks = true;
    bool m_printerMayBeOther = false;
    bool m_isSearching = false;
    bool m_isUnchosen = false;  // several were found
    QStringList m_usualRemarks; // those that were agreed to
    QString m_lastSender;       // of the slip before, by his key
    bool m_isPrinting = false;
};

} // namespace shipping

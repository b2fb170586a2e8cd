#pragma once

#include "base/result.h"
#include "shipping/slips/shipment.h"

#include <QWidget>

#include <functional>
#include <memory>

class QLineEdit;

namespace Ui
{
class ShipmentPanel;
}

namespace workspace
{
class Workspace;
struct SettingKey;
} // namespace workspace

namespace shipping
{

class PartyBoxes;

/// Where a screen keeps what stands on each of its slips: 顧客コード and 発店コード, the two lines of
/// remarks.
struct KeptKeys
{
    const workspace::SettingKey (&code)[2];
    const workspace::SettingKey (&memo)[2];
};

/// All that a shipping slip says, as every screen of shipping slips shows it.
class ShipmentPanel : public QWidget
{
    Q_OBJECT

public:
    explicit ShipmentPanel(QWidget *parent = nullptr);
    ~ShipmentPanel() override;

    /// To be called once by the screen's constructor: offers what the masters hold, and begins an empty slip
    /// of today on the form of the settings panel.
    base::Status bind(workspace::Workspace &workspace);
    /// What can be typed into a slip that is shown.
    enum class Typing { None, CodesAndRemarks };
    /// Lets nothing else be typed from now on. To be called before the screen's setUp().
    void setReadOnly(Typing typing = Typing::None);
    /// Calls the remarks what they say on gifts: のし上書き, 名入れ.
    void showGiftWords();
    /// Whether ゆうパック slips ask for お届け通知, which the panel says beside them.
    void tellNotice(bool wanted);
    /// What the printer's name opens; without it the name only shows.
    void setPrinterSettings(std::function<void(QWidget *)> open);

    /// Shows codes and remarks as the screen kept them, or keeps them.
    void readKept(const KeptKeys &keys);
    void writeKept(const KeptKeys &keys) const;
    void writeKeptCodes(const KeptKeys &keys) const;

    void setShipment(const Shipment &shipment);
    /// What is typed, with all that the panel does not show as setShipment() had it. A customer whose name
    /// was typed over is no longer the one that the parcel goes to, or comes from. The error says what cannot
    /// be meant: a date that is none, a price that is no number; focusFault() puts the cursor there.
    [[nodiscard]] base::Result<Shipment> shipment() const;
    void focusFault();
    /// Does now what leaving the boxes leaves to do, as before a slip is printed or saved.
    void settle();
    /// Follows the day where midnight passed: a slip of today stays one of today.
    void followToday();
    /// The remarks that nobody typed for this slip, as the last one or the settings left them: "備考１「…」".
    [[nodiscard]] QStringList remainingRemarks() const;
    /// An empty slip of today.
    void clear();
    /// The next slip after the one that was printed, as nextOf() has it; what was typed wrongly goes.
    void beginNext();
    /// Sends once more what \a earlier was: its consignee, goods and remarks.
    void fillFrom(const Shipment &earlier);

    /// Whether anything is otherwise than setShipment(), clear() or markUnchanged() left it. What
    /// writeKept() keeps counts unless it \a isKept.
    [[nodiscard]] bool isChanged(bool isKept = false) const;
    void markUnchanged();

    [[nodiscard]] Party consignee() const;
    [[nodiscard]] Party sender() const;
    /// \a id: the customer whose they are, 0 for one of whom no register knows.
    void setConsignee(const Party &consignee, qint64 id);
    void setSender(const Party &sender, qint64 id);
    /// Whether something stands there that was typed, and not put there.
    [[nodiscard]] bool isConsigneeTyped() const;
    [[nodiscard]] bool isSenderTyped() const;
    [[nodiscard]] qint64 consigneeId() const;
    [[nodiscard]] qint64 senderId() const;
    [[nodiscard]] QString category() const;
    /// Its form; empty for one that there is none of any more.
    [[nodiscard]] QString form() const;
    /// What the clerk has to write onto the slip, as its form has no place for it: a sentence, or nothing.
    [[nodiscard]] QString handwriting() const;
    /// How many categories there are to choose from.
    [[nodiscard]] int categoryCount() const;

    // Where the work goes on.
    void focusConsignee();
    void focusConsigneeZip();
    void focusSender();
    void focusCategory();
    void focusSlip();

signals:
    void formChanged(const QString &form);

private:
    // What is typed, and the first box that says something impossible.
    struct Reading
    {
        Shipment shipment;
        base::Status status;
        QWidget *box = nullptr;
    };

    void connectForms();
    base::Status offerMasters(workspace::Workspace &workspace);
    void fillChoices();
    [[nodiscard]] Reading read() const;
    void readDays(Reading &reading) const;
    void readYen(Reading &reading) const;
    void takeProduct();
    void showForm();
    void showHandwriting();
    void showPrinter();
    void openPrinter();
    void chooseFont();
    [[nodiscard]] QStringList state(bool isKept) const;
    void showGoods(const Shipment &shipment);

    std::unique_ptr<Ui::ShipmentPanel> m_ui;
    workspace::Workspace *m_workspace = nullptr;
    std::function<void(QWidget *)> m_openPrinter;
    PartyBoxes *m_to;
    PartyBoxes *m_from;
    Shipment m_base; // what is not shown
    QString m_takenProduct;
    QDate m_today; // as far as the panel knows
    bool m_isReadOnly = false;
    bool m_keepsRemarks = false; // they are not those of setShipment()
    QStringList m_unchanged[2];  // with what is kept, and without
};

} // namespace shipping

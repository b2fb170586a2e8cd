#pragma once

#include "shipping/gifts/gift_order_model.h"
#include "shipping/slips/slip_run.h"
#include "ui/screen.h"

#include <QTimer>

#include <memory>

class QComboBox;

namespace Ui
{
class frmKuroneko5;
}

namespace registers
{
class PostalBoxes;
}

namespace ui
{
class CellDelegate;
}

namespace shipping
{

class LabelPlaceBox;

/// 一括発送伝票発行: the slips of a whole gift order sheet in one run. One sender, what is the same for all
/// parcels, and a grid of consignees: typed, pasted, searched, or loaded from what was sent last year. What
/// is typed is kept as a draft until it is out.
class frmKuroneko5 : public ui::Screen
{
    Q_OBJECT

public:
    explicit frmKuroneko5(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmKuroneko5() override;

protected:
    bool mayClose() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setUpBoxes();
    void offerNames();
    void offerYears();
    void setUpGrid();
    void connectBoxes();
    void connectGrid();
    void connectActions();

    // What is the same for all.
    struct Head
    {
        GiftOrder order;        // without lines
        base::Status status;    // why a box cannot be meant
        QWidget *box = nullptr; // that one
    };
    struct TermBox
    {
        GiftColumn column;
        QLineEdit *line;
        QComboBox *choice;
    };
    [[nodiscard]] std::vector<TermBox> termBoxes() const;
    [[nodiscard]] QString typedIn(const TermBox &box) const;
    [[nodiscard]] Head readHead() const;
    [[nodiscard]] Party sender() const;
    [[nodiscard]] qint64 senderId() const;
    void takeHead();
    void showHead(const GiftOrder &order);
    void showSender(const Party &party, qint64 id);
    void readSettings();
    void writeSettings();

    // The lines.
    /// The customer that \a box means; nothing where it means none, which was told.
    std::optional<qint64> chosenIn(QComboBox &box);
    void searchSender();
    void addConsignee();
    void presetSeason();
    void loadLastYear();
    /// Asks what becomes of the lines where they are another's than \a sender's, as they stand. \return
    /// whether the sheet goes on as his
    bool takeOver(const Party &sender, qint64 id);
    bool settleLinesOf(const Party &other, const Party &sender);
    void completeAddress(int row, GiftColumn column);
    void paste();
    void removeRows();
    void takeBack();
    void followCommon();
    [[nodiscard]] std::vector<int> selectedRows() const;
    void goTo(int row, GiftColumn column);
    void showState();
    void say(const QString &words);

    // The draft.
    [[nodiscard]] bool hasWork() const;
    void openDraft();
    void keepDraft();

    // The slips.
    /// Takes what is being typed. \return whether all of it can be meant; what cannot was told
    bool settle();
    bool checkHeadBoxes();
    [[nodiscard]] QString remarkOn(const base::Error &fault) const;
    bool checkRows();
    bool settleDoubts();
    void preview();
    void showSheet();
    void issue();
    [[nodiscard]] QString byHand(const Shipment &shipment) const;
    void takeOutcome(const SlipRunOutcome &outcome, const std::vector<std::size_t> &rows);
    void tellOutcome(const SlipRunOutcome &outcome, std::size_t wanted);

    const std::unique_ptr<Ui::frmKuroneko5> m_ui;
    GiftOrderModel m_rows;
    SlipPrinter m_printer;
    ui::CellDelegate *m_cells = nullptr;
    registers::PostalBoxes *m_postal = nullptr;
    LabelPlaceBox *m_places = nullptr;
    Party m_found; // the sender as the register had him
    qint64 m_foundId = 0;
    Party m_owner; // whose the lines are; without a name as long as nobody has said
    qint64 m_ownerId = 0;
    QTimer m_drafts; // keeps the draft a moment after the last change
    bool m_fills = false;
};

} // namespace shipping

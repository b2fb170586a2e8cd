#pragma once

#include "book/counterpart_name.h"
#include "slips/correction/edited_slip.h"
#include "slips/documents/paper_state.h"
#include "ui/screen.h"

#include <memory>

class QLineEdit;

namespace ui
{
class CellDelegate;
class Grid;
} // namespace ui

namespace Ui
{
class CorrectionForm;
}

namespace slips
{

/// Wherein the correction screens differ.
struct CorrectionDescription
{
    book::SlipKind kind;
    const char16_t *screen; // object name
    const char16_t *title;
    const book::CounterpartSearch &search;
    const char16_t *party;   // "納品先", "仕入先"
    const char16_t *several; // tells that a search matches more than one of them
    bool showsAddress = false;
    bool reprints = false;          // Command2
    bool hasDesignatedForm = false; // Check2
    bool isSent = false;            // its goods go out as parcels
};

/// The screens that correct stored slips of one kind: headers in DataGrid1, the shown one's lines in dgdSub,
/// both edited in place. What was edited is saved when its row is left, after a question where it is
/// doubtful, or by Command3.
class SlipCorrectionScreen : public ui::Screen
{
    Q_OBJECT

public:
    ~SlipCorrectionScreen() override;

    /// Goes to the slip \a id, told when it is not among the slips of this kind. \return whether it is
    bool openSlip(qint64 id);

protected:
    SlipCorrectionScreen(workspace::Workspace &workspace, QWidget *parent,
                         const CorrectionDescription &description);

    /// Prints the slip \a id anew; where the description says that the screen reprints. \return whether there
    /// is a paper now
    virtual bool reprint(qint64 /*id*/) { return false; }
    /// What a reprint asks of the shown slip.
    [[nodiscard]] bool designatedForm() const;
    [[nodiscard]] bool pricesIncludeTax() const;
    [[nodiscard]] std::optional<bool> knownInclusive() const; // empty where nobody knows
    [[nodiscard]] QString memo() const;

    bool mayClose() override;

private:
    void setCaptions();
    void setUpGrids();
    void connectControls();
    [[nodiscard]] std::optional<double> rateOf(book::GoodsTax goods) const;
    void pasteByKey(ui::Grid *grid, db::Recordset &rows);
    void fillEmployees();
    [[nodiscard]] QHash<qint64, QString> employeeNames() const;

    void showAll();
    void search();
    void narrowTo(book::CounterpartKey counterpart);

    void showSlip();
    void showCount();
    void showHeader();
    void showCounterpart();
    void showRemarks();
    void showParcels();
    [[nodiscard]] QString slipInWords() const;
    bool editHeader(const QString &column, QLineEdit *box);
    [[nodiscard]] QModelIndex headerCell(const QString &column) const; // of the shown slip
    void tellLater(const QString &refusal);

    bool settled();
    bool mayLeave();
    void update();
    void takeBack();
    void deleteSlip();
    void addLine();
    void deleteLine();
    void closeOpenSlip();
    base::Status leaveSlip();
    [[nodiscard]] base::Result<PaperState> paperNow();
    void print();
    bool taxIsSettled();
    void showAndRemember();
    void offerReprint();
    [[nodiscard]] bool hasParcels() const;
    [[nodiscard]] QString number() const;
    void beginParcel();
    void openParcels();

    CorrectionDescription m_description;
    std::unique_ptr<Ui::CorrectionForm> m_ui;
    ui::CellDelegate *m_headerCells = nullptr;
    ui::CellDelegate *m_lineCells = nullptr;
    EditedSlip m_slip;
    std::optional<PaperState> m_printed; // of the slip that was printed last
};

} // namespace slips

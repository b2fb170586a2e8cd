#pragma once

#include "slips/counterpart_search.h"
#include "slips/line_entry.h"
#include "slips/slip_grid_model.h"
#include "slips/slip_state.h"
#include "slips/slip_store.h"
#include "slips/tax.h"
#include "ui/screen.h"

class QCheckBox;
class QDateEdit;
class QLabel;
class QLineEdit;

namespace ui
{
class Grid;
}

namespace slips
{

/// A box of the header that shows a column of the chosen counterpart.
struct HeaderField
{
    const char16_t *control;
    const char16_t *column;
};

/// Wherein the goods-slip screens differ.
struct GoodsSlipDescription
{
    SlipKind kind;
    char16_t manualLetter; // with which a number typed by hand begins
    const CounterpartSearch &search;
    const char16_t *nothingFound; // question after a search without result
    std::vector<int> foundWidths; // of the search result's columns, pixels; 0 hides one
    std::vector<HeaderField> fields;
    LineEntry::Names products;
    EmptyPriceRule emptyPrice;
    bool stampsCounterpart; // today becomes its 更新日
    bool showsIncludedTax;
};

/// The screens that enter slips of goods: choose the counterpart, save the header, enter lines, close. They
/// share the names of their controls; a screen's own class sets up its form and adds what it alone has.
class GoodsSlipScreen : public ui::Screen
{
    Q_OBJECT

public:
    /// Opens the editor for a new counterpart. \return the key of the one saved, 0 when none was
    using CounterpartEditor = std::function<qint64(QWidget *)>;

    /// Puts \a editor in the place of the register's own one behind Command4 and the search that finds
    /// nothing.
    void setCounterpartEditor(CounterpartEditor editor) { m_counterpartEditor = std::move(editor); }

protected:
    GoodsSlipScreen(app::Workspace &workspace, QWidget *parent, GoodsSlipDescription description);

    /// To be called at the end of the constructor, after setupUi().
    void setUpSlip();

    bool mayClose() override;

    [[nodiscard]] SlipState state() const { return m_state; }
    /// The slip being entered.
    [[nodiscard]] const SavedHeader &header() const { return m_header; }
    [[nodiscard]] TaxClass taxClass() const;
    [[nodiscard]] bool inclusive() const;

private:
    void findControls();
    void setUpGrids();
    void connectControls();

    void search();
    void editNewCounterpart();
    void goOnWithHeader();
    void showCounterpart();
    [[nodiscard]] qint64 counterpart() const;
    void checkNumber();

    void saveHeader();
    void beginLines();
    void showPreviousLines();
    void addLine();
    void removeLine();
    void showTotals();
    void showTax();

    db::Result<ClosedSlip> closeSlip();
    void next();
    void cancelSlip();
    void tellOfSlip(const db::Error &error);
    void leaveSlip(const QString &message);
    void clearForNext(const QString &message);
    void enter(SlipState state);

    GoodsSlipDescription m_description;
    CounterpartEditor m_counterpartEditor;
    db::Recordset m_found;
    SlipGridModel m_lines;
    SlipGridModel m_previous;
    LineEntry *m_entry = nullptr;
    SlipState m_state = SlipState::NoHeader;
    SavedHeader m_header;
    double m_total = 0; // yen

    QLineEdit *m_key = nullptr;
    QLineEdit *m_counterpart = nullptr;
    QLineEdit *m_taxClass = nullptr;
    QLabel *m_taxClassName = nullptr;
    QLineEdit *m_number = nullptr;
    QDateEdit *m_date = nullptr;
    QLineEdit *m_totalBox = nullptr;
    QLineEdit *m_tax = nullptr;
    QLineEdit *m_taxFlag = nullptr;
    QLineEdit *m_memo = nullptr;
    QCheckBox *m_inclusive = nullptr;
    QLabel *m_message = nullptr;
    std::vector<QLineEdit *> m_fields; // as the description lists them
    ui::Grid *m_foundGrid = nullptr;
    ui::Grid *m_lineGrid = nullptr;
    ui::Grid *m_previousGrid = nullptr;
    std::vector<std::pair<QWidget *, const ControlLife *>> m_lives;
};

} // namespace slips

#pragma once

#include "book/counterpart_search.h"
#include "book/slip_store.h"
#include "slips/entry/slip_controls.h"
#include "slips/entry/slip_state.h"
#include "ui/screen.h"

#include <functional>

namespace slips
{

/// Wherein the headers of the slip screens differ.
struct SlipDescription
{
    book::SlipKind kind;
    char16_t manualLetter; // with which a number typed by hand begins
    const book::CounterpartSearch &search;
    const char16_t *nothingFound; // question after a search without result
    std::vector<int> foundWidths; // of the search result's columns, pixels; 0 hides one
    bool stampsCounterpart;       // today becomes its 更新日
};

/// Sets the first widths of \a grid's columns, pixels; 0 hides one.
void setWidths(ui::Grid *grid, const std::vector<int> &pixels);

/// The screens that enter slips: choose the counterpart, save the header, enter lines, close. This
/// base does the header and the life of a slip; what a line is, is told by the
/// classes below it.
class SlipScreen : public ui::Screen
{
    Q_OBJECT

public:
    /// Opens the editor for a new counterpart. \return the key of the one saved, 0 when none was
    using CounterpartEditor = std::function<qint64(QWidget *)>;

    /// Puts \a editor in the place of the register's own one behind Command4 and the search that finds
    /// nothing.
    void setCounterpartEditor(CounterpartEditor editor) { m_counterpartEditor = std::move(editor); }

    /// Chooses \a counterpart for the slip that the screen begins with. To be called before it is shown.
    void beginFor(qint64 counterpart);

protected:
    SlipScreen(workspace::Workspace &workspace, QWidget *parent, SlipDescription description);

    /// To be called at the end of the constructor of the screen's own class, after setupUi().
    void setUpSlip(SlipControls controls);

    // What the kinds of lines do.

    /// Fills and connects the controls of the lines.
    virtual void setUpLines() = 0;
    /// Another counterpart is shown, or none.
    virtual void counterpartShown(bool /*chosen*/) {}
    /// Whether the prices of a new slip include the tax; empty where no tax is kept.
    [[nodiscard]] virtual std::optional<bool> pricesIncludeTax() const { return std::nullopt; }
    /// The header was saved; the first line can be typed.
    virtual void beginLines() = 0;
    /// Puts the cursor where a line begins.
    virtual void focusLine() = 0;
    /// Whether something stands in the line's boxes that is not in the slip.
    [[nodiscard]] virtual bool lineIsTyped() const = 0;
    /// Empties the part of the lines for the next slip.
    virtual void clearLines() = 0;
    /// Stores what stands in a box of the open slip and is not in it yet. \return whether it is; told else
    virtual bool storeRemark() { return true; }
    /// The slip is done with on this screen: it was closed, or is left as it is.
    virtual void slipEnds() {}
    /// What is to be considered before the slip is deleted.
    [[nodiscard]] virtual QString cancelRemark() const { return {}; }
    /// How many lines the slip has.
    [[nodiscard]] virtual int lineCount() const = 0;
    /// Whether closing the slip stores a tax line that is due on it.
    [[nodiscard]] virtual bool taxIsDue() const { return false; }
    /// Closes the slip in the database. \return the sentence that says so
    virtual base::Result<QString> closeSlip() = 0;

    [[nodiscard]] SlipState state() const { return m_state; }
    void enter(SlipState state);

    /// The slip being entered.
    [[nodiscard]] const book::SavedHeader &header() const { return m_header; }
    [[nodiscard]] qint64 counterpart() const;
    [[nodiscard]] QDate date() const;
    [[nodiscard]] const book::SlipKind &kind() const { return m_description.kind; }

    /// Shows \a text in the screen's message line.
    void say(const QString &text);

    /// Asks whether a line that was typed but not entered may be passed over. \return whether to go on
    bool mayPassOverLine();

    /// Stores a line of the slip by \a add. \return whether it is stored; else it was told
    bool storeLine(const std::function<base::Status(db::Connection &)> &add);
    /// Takes the line entered last out of the slip. \return whether there was one; nothing when it failed,
    /// which was told
    std::optional<bool> takeLineBack(int lines = 1);

    /// Tells the error of an action on the slip. Nothing more can be done to a slip that another program has
    /// deleted; the screen then goes on with the next one.
    void tellOfSlip(const base::Error &error);

    bool mayClose() override;

private:
    void connectControls();

    void search();
    void editNewCounterpart();
    void goOnWithHeader();
    void showCounterpart();
    void checkNumber();
    void saveHeader();
    void tellOfNumber(const base::Error &error);
    base::Result<QString> slipAs(const book::SlipKind &kind, const book::NewSlip &slip);
    bool mayBearNumber(const book::NewSlip &slip);

    bool leaveWithLines();
    bool leaveWithoutLines();

    void next();
    void cancelSlip();
    bool deleteSlip();
    void leaveSlip(const QString &message);
    void clearForNext(const QString &message);
    [[nodiscard]] QString dateRemark() const;

    SlipDescription m_description;
    CounterpartEditor m_counterpartEditor;
    db::Recordset m_found;
    SlipState m_state = SlipState::NoHeader;
    book::SavedHeader m_header;

    SlipControls m_controls = {};
};

} // namespace slips

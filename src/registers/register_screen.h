#pragma once

#include "book/slip_kind.h"
#include "db/recordset.h"
#include "ui/screen.h"

#include <optional>
#include <vector>

class QLabel;
class QPushButton;

namespace ui
{
class Grid;
}

namespace registers
{

class NamelessHint;

/// A register: a list of rows and the boxes of the current one, in which a row is browsed and edited, or a
/// new one entered. What the clerk typed is saved, or the clerk is asked, before it is left.
class RegisterScreen : public ui::Screen
{
    Q_OBJECT

public:
    /// Starts a new row as soon as the screen is shown.
    void startNew() { m_startsNew = true; }

protected:
    enum class Mode { Browsing, Entry };

    /// A refused or failed saving, as it is told.
    struct Failure
    {
        QString text; // empty: nothing more is to be told
        QString title;
        QString column; // the box that the cursor goes to; empty: it stays
    };

    /// When \a control can be used.
    struct State
    {
        QWidget *control;
        bool withoutRow, browsing, entry;
    };

    /// \a entryOpen asks whether a row in entry is to be saved before the screen closes.
    RegisterScreen(workspace::Workspace &workspace, const QString &entryOpen, QWidget *parent);

    /// To be called by the constructor: \a list shows the rows, \a count their number.
    void bindList(ui::Grid *list, QLabel *count);

    /// \a undo takes back what was typed into the row that is browsed, for as long as that can be done.
    void bindUndo(QPushButton *undo);

    /// \a button leads to the rows without a name, and shows only where there are some.
    void bindNameless(QPushButton *button, book::Party party);

    [[nodiscard]] db::Recordset &rows() { return m_rows; }
    [[nodiscard]] const db::Recordset &rows() const { return m_rows; }
    [[nodiscard]] Mode mode() const { return m_mode; }
    /// Key of the row saved last on this screen; nothing when none was saved.
    [[nodiscard]] std::optional<qint64> savedKey() const { return m_savedKey; }

    /// Keeps the screen from reading its rows when it is shown: \a opened, the one that was asked for, is
    /// there already.
    bool opened(const base::Status &opened);

    // --- What a register does in its own way ---

    /// Opens what is listed at first; nothing on a screen that waits for a search.
    virtual base::Status openRows() { return {}; }
    /// Makes a new row the current one and ends in beginEntry(). Not on a screen that only corrects rows.
    virtual void add() {}
    [[nodiscard]] virtual std::vector<State> states() const = 0;
    /// Does now what leaving a box leaves to do, before the row is saved.
    virtual void settleBoxes() {}
    /// Never does it: another row stands in the boxes.
    virtual void forgetBoxes() {}
    /// What keeps the current row from being saved.
    [[nodiscard]] virtual std::optional<Failure> refusal() const { return std::nullopt; }
    virtual base::Status store() = 0;
    /// Whether the row on the screen was changed since it was shown.
    [[nodiscard]] virtual bool canTakeBack() const { return m_rows.isDirty(); }
    /// Takes these changes back.
    virtual void takeBack() { m_rows.revert(); }
    /// Shows the current row in the boxes again.
    virtual void showRow() = 0;
    virtual void focusColumn(const QString &) {}
    /// What a value that is a number for something is called on the screen; empty for any other.
    [[nodiscard]] virtual QString wordsFor(const QString & /*column*/, const QVariant & /*value*/) const
    {
        return {};
    }
    /// Where the cursor goes when an entry has ended.
    virtual void entryEnded() {}
    /// How many rows there are, as it is shown.
    [[nodiscard]] virtual QString countText() const;

    // --- The actions ---

    void beginEntry() { setMode(Mode::Entry); }
    bool save();
    void saveAndBrowse();
    void cancelEntry();
    void removeRow();
    /// Saves what was typed before the list changes. \return false when the row cannot be left
    bool leaveRow();
    /// Lists as at first what openRows() does, with the row \a key as the current one. \return whether it
    /// is there
    bool openRowsAt(qint64 key);
    void showStates();
    /// The row on the screen is whom the clerk deals with.
    void rememberRow();

    bool mayClose() override;
    void showEvent(QShowEvent *event) override;

private:
    /// Whether a new row is wanted although one of its name and telephone number is there; asked where it is.
    bool mayHaveTwin();
    std::optional<Failure> trySave();
    void tellFailure();
    void followRow();
    [[nodiscard]] book::Party party() const;
    [[nodiscard]] QString removalRemark() const;
    bool deleteShown();
    void setMode(Mode mode);
    void showUndo();
    void careForNameless(book::Party party);
    void countNameless();

    db::Recordset m_rows;
    QString m_entryOpen;
    QLabel *m_count = nullptr;
    QPushButton *m_undo = nullptr;
    NamelessHint *m_nameless = nullptr;
    Mode m_mode = Mode::Browsing;
    bool m_startsNew = false;
    bool m_opened = false;
    qint64 m_shownKey = 0;
    std::optional<qint64> m_savedKey;
    std::optional<Failure> m_failure; // of the last saving
};

} // namespace registers

#pragma once

#include "db/recordset.h"
#include "masters/master_definitions.h"
#include "ui/record_panel.h"
#include "ui/screen.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace ui
{
class Grid;
}

namespace masters
{

/// The editors of the masters: a record set, the boxes of its current row, and four buttons. A new row is
/// stored at once with its key alone and lives on only when it is confirmed; existing rows are edited in
/// place and saved when they are left.
///
/// A form class sets up its form and calls start().
class MasterEditor : public ui::Screen
{
    Q_OBJECT

protected:
    MasterEditor(workspace::Workspace &workspace, const MasterDefinition &definition, QWidget *parent);

    /// A box and the column that it shows.
    struct Field
    {
        QLineEdit *box;
        QString column;
    };

    /// A drop-down and the column whose number it shows.
    struct Choice
    {
        QComboBox *box;
        QString column;
    };

    struct Controls
    {
        QPushButton *add;
        QPushButton *confirm;
        QPushButton *cancel;
        QPushButton *remove;
        QPushButton *undo; // takes back what was typed into an existing row
        QLabel *hint;
        std::vector<Field> fields = {}; // the key first
        std::vector<Choice> choices = {};
        // Lets the row be edited, which is only shown until then; not in every form.
        QPushButton *edit = nullptr;
        ui::Grid *grid = nullptr; // shows the list as well; not in every form
    };

    /// Those of a form but for its boxes and its grid, under the names that the editors' forms share.
    template <class Form>
    static Controls buttonsOf(const Form &form)
    {
        return {form.cmdAdd, form.cmdUpdate, form.cmdCancel, form.cmdDelete, form.cmdUndo, form.lblHint};
    }

    /// Opens the list and shows its first row in the controls.
    void start(Controls controls);

    /// Whether the row may be stored as it was typed, after it was asked about where that is in doubt.
    virtual bool mayStore() { return true; }

    void becameActive() override;
    bool mayClose() override;

private:
    void bindBoxes();
    void openList();

    void add();
    void edit();
    void undo();
    void confirm();
    void cancel();
    void remove();

    [[nodiscard]] QString shownRow() const;
    base::Status store();
    bool saveRow();
    bool dropNewRow();
    void entered(EditorStep step);
    void showUndo();
    void showWhatCanBeTyped();
    void showHint();
    void tellThatListFailed(const base::Error &error);

    const MasterDefinition &m_definition;
    db::Recordset m_rows;
    ui::RecordPanel m_panel;
    Controls m_controls = {};
    QList<QLineEdit *> m_boxes; // the key's box is not among them
    bool m_newRow = false;      // the current row is a new one, not confirmed yet
    bool m_onlyShown = false;   // nothing can be typed
    qint64 m_keyBefore = 0;     // of the row shown before the new one
};

} // namespace masters

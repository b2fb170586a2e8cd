#pragma once

#include "db/recordset.h"
#include "masters/master_definitions.h"
#include "ui/record_panel.h"
#include "ui/screen.h"

class QLabel;
class QLineEdit;
class QPushButton;

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
/// A form class sets up its form, in which the controls have their usual names, and calls start().
class MasterEditor : public ui::Screen
{
    Q_OBJECT

protected:
    MasterEditor(workspace::Workspace &workspace, const MasterDefinition &definition, QWidget *parent);

    /// Finds the controls, opens the list and shows its first row.
    void start();

    /// A grid that shows the list as well; to be named before start().
    void setGrid(ui::Grid *grid) { m_grid = grid; }

    void becameActive() override;
    bool mayClose() override;

private:
    void findControls();
    void openList();

    void add();
    void confirm();
    void cancel();
    void remove();

    bool saveRow();
    void entered(EditorStep step);
    void showHint();
    void tellThatListFailed(const base::Error &error);

    const MasterDefinition &m_definition;
    db::Recordset m_rows;
    ui::RecordPanel m_panel;
    ui::Grid *m_grid = nullptr;
    QList<QLineEdit *> m_boxes; // the key's box is not among them
    QPushButton *m_add = nullptr;
    QPushButton *m_confirm = nullptr;
    QPushButton *m_cancel = nullptr;
    QPushButton *m_remove = nullptr;
    QLabel *m_hint = nullptr;
    bool m_newRow = false;  // the current row is a new one, not confirmed yet
    qint64 m_keyBefore = 0; // of the row shown before the new one
};

} // namespace masters

#include "masters/master_editor.h"

#include "ui/both_versions.h"
#include "ui/grid.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui/twips.h"
#include "ui/width_check.h"
#include "workspace/workspace.h"

#include <QShortcut>

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{

// Twips.
constexpr double keyColumnWidth = 1200;
constexpr double nameColumnWidth = 3000;

constexpr int plainColumnCharacters = 12; // half-width
constexpr int choiceCharacters = 20;

ui::NameOf namesOf(const QStringList &choices)
{
    if (choices.isEmpty())
        return {};
    return [choices](qint64 number) { return choices.value(number); };
}

} // namespace

MasterEditor::MasterEditor(workspace::Workspace &workspace, const MasterDefinition &definition,
                           QWidget *parent)
    : Screen(workspace, parent)
    , m_definition(definition)
    , m_rows(workspace.connection)
    , m_panel(m_rows, nullptr)
{}

void MasterEditor::start(Controls controls)
{
    m_controls = std::move(controls);
    setObjectName(m_definition.screen);
    setWindowTitle(m_definition.caption);
    bindBoxes();
    openList();
    m_rows.setSaver([this] { return store(); });
    connect(m_controls.add, &QPushButton::clicked, this, &MasterEditor::add);
    connect(m_controls.confirm, &QPushButton::clicked, this, &MasterEditor::confirm);
    connect(m_controls.cancel, &QPushButton::clicked, this, &MasterEditor::cancel);
    connect(m_controls.remove, &QPushButton::clicked, this, &MasterEditor::remove);
    connect(m_controls.undo, &QPushButton::clicked, this, &MasterEditor::undo);
    connect(&m_rows, &db::Recordset::edited, this, &MasterEditor::showUndo);
    connect(&m_rows, &db::Recordset::currentRowChanged, this, &MasterEditor::showUndo);
    connect(&m_rows, &db::Recordset::currentRowChanged, this, &MasterEditor::showWhatCanBeTyped);
    if (m_controls.edit) {
        connect(m_controls.edit, &QPushButton::clicked, this, &MasterEditor::edit);
        connect(new QShortcut(Qt::Key_F2, this), &QShortcut::activated, m_controls.edit, &QPushButton::click);
    }
    setUp();
}

void MasterEditor::bindBoxes()
{
    if (!m_definition.deleteCaption.isEmpty())
        m_controls.remove->setText(m_definition.deleteCaption);
    for (const Field &field : m_controls.fields) {
        m_panel.bind(field.box, field.column);
        m_boxes << field.box;
    }
    for (const Choice &choice : m_controls.choices)
        m_panel.bind(choice.box, choice.column);
    // Keys are given by the program; the box only shows.
    QLineEdit *key = m_boxes.takeFirst();
    key->setReadOnly(true);
    key->setFocusPolicy(Qt::ClickFocus);
}

void MasterEditor::openList()
{
    const base::Status opened = m_rows.open(m_definition.list);
    if (!opened) {
        m_rows.close();
        tellThatListFailed(opened.error());
    }
    if (m_controls.grid) {
        QList<ui::GridColumn> shown;
        for (const MasterField &field : m_definition.fields)
            shown << ui::GridColumn{.column = field.column,
                                    .characters =
                                        field.choices.isEmpty() ? plainColumnCharacters : choiceCharacters,
                                    .nameOf = namesOf(field.choices)};
        m_controls.grid->letSort();
        m_controls.grid->letChooseColumns();
        m_controls.grid->setColumns(shown);
        m_controls.grid->bind(m_rows, [this](const QString &reason) { ui::prompts::inform(this, reason); });
        m_controls.grid->setColumnWidth(0, ui::pixelsFromTwips(keyColumnWidth));
        m_controls.grid->setColumnWidth(1, ui::pixelsFromTwips(nameColumnWidth));
    }
    entered(EditorStep::Opened);
}

void MasterEditor::becameActive()
{
    // The first visit lands in the first row at once.
    if (m_rows.isOpen() && m_rows.isEmpty())
        add();
}

void MasterEditor::add()
{
    if (!saveRow())
        return;
    const qint64 keyBefore = m_rows.currentKey();
    const bool wasEmpty = m_rows.isEmpty();
    if (const auto added = m_rows.add(); !added) {
        if (wasEmpty)
            tellThatListFailed(added.error());
        else
            ui::prompts::inform(this, added.error().text);
        return;
    }
    m_keyBefore = keyBefore;
    entered(EditorStep::Added);
    m_boxes.first()->setFocus();
}

void MasterEditor::edit()
{
    entered(EditorStep::Edited);
    m_boxes.first()->setFocus();
}

void MasterEditor::undo() { m_rows.revert(); }

void MasterEditor::confirm()
{
    if (!saveRow())
        return;
    entered(EditorStep::Confirmed);
    m_controls.add->setFocus();
}

void MasterEditor::cancel()
{
    m_rows.revert();
    // A row that cannot be deleted now stays in the list, where it can be deleted later.
    if (m_rows.remove())
        (void)m_rows.moveToKey(m_keyBefore);
    entered(EditorStep::Cancelled);
    m_controls.add->setFocus();
}

void MasterEditor::remove()
{
    if (m_newRow) {
        ui::prompts::inform(
            this, u"新規登録の途中では削除できません。「登録」で確定するか、「取消」でやめてください。"_s);
        return;
    }
    if (m_rows.isEmpty() || !ui::prompts::askCautiously(this, ui::messages::deleteQuestion(), shownRow()))
        return;
    if (const base::Status removed = m_rows.remove(); !removed) {
        if (removed.error().changed)
            tell(removed);
        return; // the row is still there to be seen
    }
    entered(EditorStep::Deleted);
    if (m_rows.isEmpty())
        m_controls.add->setFocus();
}

// Which one it is, for a question about it.
QString MasterEditor::shownRow() const
{
    const QString name = m_boxes.first()->text();
    return u"削除する行： %1　%2"_s.arg(m_rows.currentKey()).arg(name.isEmpty() ? u"（名前なし）"_s : name);
}

base::Status MasterEditor::store()
{
    return ui::saveBesideOthers(this, {&m_rows}, [this] { return m_rows.update(); });
}

bool MasterEditor::saveRow()
{
    return !m_rows.isDirty() || (ui::WidthCheck::allFit(this) && mayStore() && tell(store()));
}

bool MasterEditor::mayClose()
{
    if (!m_rows.isDirty())
        return !m_newRow || dropNewRow();
    switch (ui::prompts::askToSave(this, m_newRow ? u"入力中の行が登録されていません。登録しますか。"_s
                                                  : u"変更が保存されていません。保存しますか。"_s)) {
    case ui::prompts::Choice::Save:
        if (!saveRow())
            return false;
        if (m_newRow)
            entered(EditorStep::Confirmed);
        return true;
    case ui::prompts::Choice::Discard:
        if (m_newRow)
            return dropNewRow();
        m_rows.revert();
        return true;
    case ui::prompts::Choice::Cancel:
        break;
    }
    return false;
}

// \return whether the screen may close
bool MasterEditor::dropNewRow()
{
    if (const base::Status removed = m_rows.remove(); !removed)
        return ui::prompts::askCautiously(this, removed.error().text +
                                                    u"\n確定していない行を残したまま閉じますか。"_s);
    entered(EditorStep::Cancelled);
    return true;
}

void MasterEditor::entered(EditorStep step)
{
    m_newRow = step == EditorStep::Added;
    const bool hasRows = !m_rows.isEmpty();
    const EditorButtons buttons =
        buttonsAfter(step, m_definition.kind, hasRows,
                     {m_controls.add->isEnabled(), m_controls.confirm->isEnabled(),
                      m_controls.cancel->isEnabled(), m_controls.remove->isEnabled()});
    m_controls.add->setEnabled(buttons.add && m_rows.isOpen());
    m_controls.confirm->setEnabled(buttons.confirm);
    m_controls.cancel->setEnabled(buttons.cancel);
    m_controls.remove->setEnabled(buttons.remove);
    // Enter and a slip of the hand change nothing of a row that is there to be read.
    m_onlyShown = m_controls.edit && !m_newRow && step != EditorStep::Edited;
    if (m_controls.edit)
        m_controls.edit->setEnabled(m_onlyShown && hasRows);
    for (QLineEdit *box : std::as_const(m_boxes)) {
        box->setEnabled(hasRows); // what is typed without a row would be lost
    }
    for (const Choice &choice : m_controls.choices)
        choice.box->setEnabled(hasRows);
    showWhatCanBeTyped();
    // Moving on would leave the new row behind, neither confirmed nor given up.
    if (m_controls.grid)
        m_controls.grid->setEnabled(!m_newRow);
    showUndo();
    showHint();
}

void MasterEditor::showWhatCanBeTyped()
{
    for (QLineEdit *box : std::as_const(m_boxes))
        setReadOnly(box, m_onlyShown || m_panel.isLocked(box));
}

// A new row is given up as a whole.
void MasterEditor::showUndo() { m_controls.undo->setEnabled(!m_newRow && m_rows.isDirty()); }

void MasterEditor::showHint()
{
    if (m_newRow)
        m_controls.hint->setText(u"入力して「登録」を押してください。「取消」でやめます。"_s);
    else if (m_rows.isEmpty())
        m_controls.hint->setText(u"「新規登録」で入力を始めます。"_s);
    else if (m_onlyShown)
        m_controls.hint->setText(u"見るだけの状態です。直すときは「訂正」(F2) を押してください。"_s);
    else if (m_controls.grid)
        m_controls.hint->setText(u"変更は、行を移るときに保存されます。"_s);
    else
        m_controls.hint->setText(u"直したら「登録」を押してください。「元に戻す」でやめます。"_s);
}

void MasterEditor::tellThatListFailed(const base::Error &error)
{
    ui::prompts::inform(this, m_definition.blamesConnection ? ui::messages::databaseNotUsable() : error.text);
}

} // namespace masters

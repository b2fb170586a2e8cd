#include "masters/MasterGridEditor.h"

#include "ui/grid.h"
#include "ui/second_letter.h"
#include "ui_MasterGridEditor.h"
#include "workspace/workspace.h"

#include <QComboBox>

namespace masters
{

namespace
{

template <class Box>
Box *addBox(QFormLayout *form, const MasterField &field, QWidget *above)
{
    auto *box = new Box(form->parentWidget());
    box->setObjectName(field.control);
    form->addRow(field.label, box);
    QWidget::setTabOrder(above, box);
    return box;
}

// A shop that has one rate for all goods does not pass it by on its way to the next one.
QComboBox *addChoice(QFormLayout *form, const MasterField &field, QWidget *above, bool isStopped)
{
    auto *box = addBox<QComboBox>(form, field, above);
    box->addItems(field.choices);
    box->setFocusPolicy(isStopped ? Qt::StrongFocus : Qt::ClickFocus);
    return box;
}

} // namespace

MasterGridEditor::MasterGridEditor(workspace::Workspace &workspace, Master master, QWidget *parent)
    : MasterEditor(workspace, definitionOf(master), parent)
{
    const MasterDefinition &definition = definitionOf(master);
    Ui::MasterGridEditor form;
    form.setupUi(this);
    Controls controls = buttonsOf(form);
    controls.grid = form.DataGrid1;
    QWidget *above = form.DataGrid1;
    for (const MasterField &field : definition.fields) {
        if (field.choices.isEmpty()) {
            controls.fields.push_back({addBox<QLineEdit>(form.fields, field, above), field.column});
            above = controls.fields.back().box;
        } else {
            const bool isStopped = workspace.panel.followsTaxTable;
            controls.choices.push_back({addChoice(form.fields, field, above, isStopped), field.column});
            above = controls.choices.back().box;
        }
    }
    controls.fields.front().box->setMaximumWidth(100);
    if (definition.hasReturnButton)
        connect(form.Command1, &QPushButton::clicked, this, &QDialog::reject);
    else
        delete form.Command1;
    ui::pressAlsoBy(*form.cmdUpdate, Qt::Key_U);
    start(std::move(controls));
}

} // namespace masters

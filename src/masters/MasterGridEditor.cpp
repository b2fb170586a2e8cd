#include "masters/MasterGridEditor.h"

#include "ui/grid.h"
#include "ui/second_letter.h"
#include "ui_MasterGridEditor.h"

namespace masters
{

namespace
{

QLineEdit *addBox(QFormLayout *form, const MasterField &field, QWidget *above)
{
    auto *box = new QLineEdit(form->parentWidget());
    box->setObjectName(field.control);
    form->addRow(field.label, box);
    QWidget::setTabOrder(above, box);
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
        controls.fields.push_back({addBox(form.fields, field, above), field.column});
        above = controls.fields.back().box;
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

#include "masters/MasterGridEditor.h"

#include "ui/grid.h"
#include "ui_MasterGridEditor.h"

namespace masters
{

namespace
{

void addFields(QFormLayout *form, const QList<MasterField> &fields, QWidget *above)
{
    for (const MasterField &field : fields) {
        auto *box = new QLineEdit(form->parentWidget());
        box->setObjectName(field.control);
        form->addRow(field.label, box);
        QWidget::setTabOrder(above, box);
        above = box;
    }
    form->itemAt(0, QFormLayout::FieldRole)->widget()->setMaximumWidth(100);
}

} // namespace

MasterGridEditor::MasterGridEditor(workspace::Workspace &workspace, Master master, QWidget *parent)
    : MasterEditor(workspace, definitionOf(master), parent)
{
    const MasterDefinition &definition = definitionOf(master);
    Ui::MasterGridEditor form;
    form.setupUi(this);
    addFields(form.fields, definition.fields, form.DataGrid1);
    if (definition.hasReturnButton)
        connect(form.Command1, &QPushButton::clicked, this, &QDialog::reject);
    else
        delete form.Command1;
    setGrid(form.DataGrid1);
    start();
}

} // namespace masters

#include "masters/frmMyco.h"

#include "ui/width_check.h"
#include "ui_frmMyco.h"

namespace masters
{

frmMyco::frmMyco(workspace::Workspace &workspace, QWidget *parent)
    : MasterEditor(workspace, definitionOf(Master::OwnCompany), parent)
{
    Ui::frmMyco form;
    form.setupUi(this);
    for (QLineEdit *box : {form.txtName1, form.txtName2, form.txtAddress1, form.txtAddress2})
        ui::WidthCheck::guard(box, ui::nameWidth);
    start();
}

} // namespace masters

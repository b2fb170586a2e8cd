#include "slips/entry/new_counterpart.h"

#include "registers/frmNouhin.h"
#include "registers/frmSiire.h"

namespace slips
{

qint64 enterNewCustomer(workspace::Workspace &workspace, QWidget *parent)
{
    registers::frmNouhin editor(workspace, parent);
    editor.startNew();
    editor.exec();
    return editor.savedCustomer().value_or(0);
}

qint64 enterNewSupplier(workspace::Workspace &workspace, QWidget *parent)
{
    registers::frmSiire editor(workspace, parent);
    editor.startNew();
    editor.exec();
    return editor.savedSupplier().value_or(0);
}

} // namespace slips

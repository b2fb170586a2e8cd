#pragma once

#include <QtGlobal>

class QWidget;

namespace workspace
{
class Workspace;
}

namespace slips
{

/// Opens the customer register with a new row. \return 納品先ID of the customer saved, 0 when none was
qint64 enterNewCustomer(workspace::Workspace &workspace, QWidget *parent);

/// Opens the supplier register with a new row. \return 仕入先ID of the supplier saved, 0 when none was
qint64 enterNewSupplier(workspace::Workspace &workspace, QWidget *parent);

} // namespace slips

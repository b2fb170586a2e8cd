#pragma once

#include <QtGlobal>

class QWidget;

namespace workspace
{
class Workspace;
}

// How slips, customers and the main window lead to the history of parcels.
namespace app
{

class frmAMain;

/// Keeps in the workspace how sales lead to their parcels (slips::ParcelDesk), as long as \a window is there.
void joinParcels(frmAMain &window, workspace::Workspace &workspace);

void openHistory(QWidget *parent, workspace::Workspace &workspace);

/// The parcels that \a customer sent or got, at \a shipment (発送ID).
void openParcelsOf(QWidget *parent, workspace::Workspace &workspace, qint64 customer, qint64 shipment);

} // namespace app

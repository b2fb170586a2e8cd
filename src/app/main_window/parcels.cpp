#include "app/main_window/parcels.h"

#include "shipping/carriers/DialogCarrierExport.h"
#include "shipping/carriers/DialogTrackingImport.h"
#include "shipping/history/frmKuroneko3.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

shipping::CarrierOpeners carrierOpeners(workspace::Workspace &workspace)
{
    return {.exportRows =
                [&workspace](QWidget *over, const std::vector<qint64> &ids) {
                    shipping::DialogCarrierExport dialog(workspace, over);
                    dialog.listShipments(ids);
                    dialog.exec();
                },
            .importNumbers =
                [&workspace](QWidget *over) { shipping::DialogTrackingImport(workspace, over).exec(); }};
}

} // namespace

void openHistory(QWidget *parent, workspace::Workspace &workspace)
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    shipping::frmKuroneko3 screen(workspace, parent);
    QGuiApplication::restoreOverrideCursor();
    screen.setCarrierOpeners(carrierOpeners(workspace));
    screen.exec();
}

void openParcelsOf(QWidget *parent, workspace::Workspace &workspace, qint64 customer, qint64 shipment)
{
    shipping::frmKuroneko3 screen(workspace, parent);
    screen.setCarrierOpeners(carrierOpeners(workspace));
    screen.showOnly({.customer = customer}, u"納品先 ID %1 の発送"_s.arg(customer));
    screen.goTo(shipment);
    screen.exec();
}

} // namespace app

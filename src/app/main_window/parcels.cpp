#include "app/main_window/parcels.h"

#include "app/main_window/frmAMain.h"
#include "printing/DialogPrinterP.h"
#include "shipping/carriers/DialogCarrierExport.h"
#include "shipping/carriers/DialogTrackingImport.h"
#include "shipping/history/frmKuroneko3.h"
#include "shipping/history/parcel_of_slip.h"
#include "shipping/slips/frmKuroneko1.h"
#include "slips/parcel_desk.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

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

// As the main window's own way to it: an own company that sends.
void beginParcel(frmAMain &window, workspace::Workspace &workspace, QWidget *parent, qint64 slip)
{
    if (!window.mayRun(Action::MailOrderSlip))
        return;
    const auto parcel = shipping::parcelOfSlip(workspace.connection, slip, workspace.today());
    if (!parcel) {
        ui::prompts::inform(parent, parcel.error().text);
        return;
    }
    shipping::frmKuroneko1 screen(workspace, parent);
    screen.setPrinterSettings([&workspace](QWidget *over) { printing::frmPrinterP(workspace, over).exec(); });
    screen.beginFor(*parcel);
    screen.exec();
}

void showParcels(workspace::Workspace &workspace, QWidget *parent, qint64 slip, const QString &number)
{
    shipping::frmKuroneko3 screen(workspace, parent);
    screen.setCarrierOpeners(carrierOpeners(workspace));
    screen.showOnly({.slip = slip}, u"伝票 %1 の発送"_s.arg(number.left(30)));
    screen.exec();
}

} // namespace

void joinParcels(frmAMain &window, workspace::Workspace &workspace)
{
    workspace.keep(slips::ParcelDesk{
        .begin = [&](QWidget *parent, qint64 slip) { beginParcel(window, workspace, parent, slip); },
        .words = [&](qint64 slip) { return shipping::parcelsInWords(workspace.connection, slip); },
        .show = [&](QWidget *parent, qint64 slip,
                    const QString &number) { showParcels(workspace, parent, slip, number); }});
}

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

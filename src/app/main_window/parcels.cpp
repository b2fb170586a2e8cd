#include "app/main_window/parcels.h"

#include "shipping/history/frmKuroneko3.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace app
{

void openHistory(QWidget *parent, workspace::Workspace &workspace)
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    shipping::frmKuroneko3 screen(workspace, parent);
    QGuiApplication::restoreOverrideCursor();
    screen.exec();
}

void openParcelsOf(QWidget *parent, workspace::Workspace &workspace, qint64 customer, qint64 shipment)
{
    shipping::frmKuroneko3 screen(workspace, parent);
    screen.showOnly({.customer = customer}, u"納品先 ID %1 の発送"_s.arg(customer));
    screen.goTo(shipment);
    screen.exec();
}

} // namespace app

#include "shipping/gifts/frmKuroneko7.h"

#include "shipping/gifts/DialogAppList2.h"
#include "workspace/settings_keys.h"

namespace shipping
{

frmKuroneko7::frmKuroneko7(workspace::Workspace &workspace, QWidget *parent)
    : GiftListScreen(workspace,
                     {.screen = u"frmKuroneko7",
                      .title = u"発送済みリスト",
                      .windowState = workspace::keys::kuroWindowState[6],
                      .report = shipmentList,
                      .isBySender = false},
                     parent)
{}

void frmKuroneko7::print(const std::vector<Shipment> &shipments, const GiftListQuery &query)
{
    DialogAppList2 dialog(workspace(), shipments, query, this);
    dialog.exec();
}

} // namespace shipping

#include "shipping/gifts/frmKuroneko6.h"

#include "shipping/gifts/DialogAppList1.h"
#include "workspace/settings_keys.h"

namespace shipping
{

frmKuroneko6::frmKuroneko6(workspace::Workspace &workspace, QWidget *parent)
    : GiftListScreen(workspace,
                     {.screen = u"frmKuroneko6",
                      .title = u"ご依頼主リスト",
                      .windowState = workspace::keys::kuroWindowState[5],
                      .report = senderList,
                      .isBySender = true},
                     parent)
{}

void frmKuroneko6::print(const std::vector<Shipment> &shipments, const GiftListQuery &query)
{
    DialogAppList1 dialog(workspace(), shipments, query, this);
    dialog.exec();
}

} // namespace shipping

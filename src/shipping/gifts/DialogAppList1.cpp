#include "shipping/gifts/DialogAppList1.h"

namespace shipping
{

DialogAppList1::DialogAppList1(workspace::Workspace &workspace, std::vector<Shipment> shipments,
                               const GiftListQuery &query, QWidget *parent)
    : AppListDialog(workspace, {.screen = u"DialogAppList1", .title = u"ご依頼主リスト", .isBySender = true},
                    std::move(shipments), query, parent)
{}

} // namespace shipping

#include "shipping/gifts/DialogAppList2.h"

namespace shipping
{

DialogAppList2::DialogAppList2(workspace::Workspace &workspace, std::vector<Shipment> shipments,
                               const GiftListQuery &query, QWidget *parent)
    : AppListDialog(workspace, {.screen = u"DialogAppList2", .title = u"発送済みリスト", .isBySender = false},
                    std::move(shipments), query, parent)
{}

} // namespace shipping

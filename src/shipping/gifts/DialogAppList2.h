#pragma once

#include "shipping/gifts/app_list_dialog.h"

namespace shipping
{

/// The list of shipments (発送済みリスト) on paper: AppList1 leaves prices and carriage off.
class DialogAppList2 : public AppListDialog
{
    Q_OBJECT

public:
    DialogAppList2(workspace::Workspace &workspace, std::vector<Shipment> shipments,
                   const GiftListQuery &query, QWidget *parent = nullptr);
};

} // namespace shipping

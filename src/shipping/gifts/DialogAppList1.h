#pragma once

#include "shipping/gifts/app_list_dialog.h"

namespace shipping
{

/// The list by sender (ご依頼主リスト) on paper: AppList1 leaves prices and carriage off, AppList4 begins a
/// page for each sender.
class DialogAppList1 : public AppListDialog
{
    Q_OBJECT

public:
    DialogAppList1(workspace::Workspace &workspace, std::vector<Shipment> shipments,
                   const GiftListQuery &query, QWidget *parent = nullptr);
};

} // namespace shipping

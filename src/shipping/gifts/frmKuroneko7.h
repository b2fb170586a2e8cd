#pragma once

#include "shipping/gifts/gift_list_screen.h"

namespace shipping
{

/// 発送済みリスト: what was sent, a line a parcel.
class frmKuroneko7 : public GiftListScreen
{
    Q_OBJECT

public:
    explicit frmKuroneko7(workspace::Workspace &workspace, QWidget *parent = nullptr);

protected:
    void print(const std::vector<Shipment> &shipments, const GiftListQuery &query) override;
};

} // namespace shipping

#pragma once

#include "shipping/gifts/gift_list_screen.h"

namespace shipping
{

/// ご依頼主リスト: the gifts of a season under those who sent them, with a gift order sheet for each.
class frmKuroneko6 : public GiftListScreen
{
    Q_OBJECT

public:
    explicit frmKuroneko6(workspace::Workspace &workspace, QWidget *parent = nullptr);

protected:
    void print(const std::vector<Shipment> &shipments, const GiftListQuery &query) override;
};

} // namespace shipping

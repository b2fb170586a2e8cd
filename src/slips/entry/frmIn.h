#pragma once

#include "slips/entry/goods_slip_screen.h"

namespace slips
{

/// Which slip of goods the supplier's screen enters.
enum class SupplierGoods { Purchase, Stocktake };

/// The screens that enter goods from a supplier: nothing is printed, the search lists suppliers by key. A
/// stocktake has no tax: it counts what lies there, and enters no balance.
class SupplierGoodsScreen : public GoodsSlipScreen
{
    Q_OBJECT

public:
    SupplierGoodsScreen(workspace::Workspace &workspace, QWidget *parent, SupplierGoods goods);

protected:
    void counterpartShown(bool chosen) override;

private:
    void showRegistration();

    QLabel *m_registration = nullptr;
};

template <SupplierGoods goods>
class SupplierScreen : public SupplierGoodsScreen
{
public:
    explicit SupplierScreen(workspace::Workspace &workspace, QWidget *parent = nullptr)
        : SupplierGoodsScreen(workspace, parent, goods)
    {}
};

using frmIn = SupplierScreen<SupplierGoods::Purchase>;
using frmTana = SupplierScreen<SupplierGoods::Stocktake>;

} // namespace slips

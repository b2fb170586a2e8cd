#pragma once

#include "slips/entry/goods_slip_screen.h"

#include <memory>

namespace Ui
{
class frmMitsumori;
}

namespace slips
{

/// Enters an estimate for a customer: a slip of goods that never enters a balance.
class frmMitsumori : public GoodsSlipScreen
{
    Q_OBJECT

public:
    explicit frmMitsumori(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmMitsumori() override;

protected:
    void clearLines() override;
    bool showPaper() override;
    [[nodiscard]] QString paperRemarks() const override;

private:
    std::unique_ptr<Ui::frmMitsumori> m_ui;
};

} // namespace slips

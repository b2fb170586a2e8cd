#pragma once

#include "slips/entry/goods_slip_screen.h"

#include <memory>

namespace Ui
{
class frmOut;
}

namespace slips
{

/// 納品書発行: enters sales slips and prints them as delivery notes.
class frmOut : public GoodsSlipScreen
{
    Q_OBJECT

public:
    explicit frmOut(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmOut() override;

protected:
    bool showPaper() override;

private:
    std::unique_ptr<Ui::frmOut> m_ui;
};

} // namespace slips

#pragma once

#include "slips/entry/goods_slip_screen.h"

#include <memory>

namespace Ui
{
class frmOut;
}

namespace slips
{

/// 納品書発行: enters sales slips and prints them as delivery notes, and a postal transfer form after each
/// one where it is ticked.
class frmOut : public GoodsSlipScreen
{
    Q_OBJECT

public:
    explicit frmOut(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~frmOut() override;

protected:
    bool showPaper() override;
    void beginLines() override;
    base::Result<QString> closeSlip() override;
    void slipEnds() override;

private:
    bool mayBePaid(const book::SlipSums &sums);

    std::unique_ptr<Ui::frmOut> m_ui;
    bool m_isClosed = false; // the slip that ends
};

} // namespace slips

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
/// one where it is ticked. A sale that was closed can be sent as a parcel.
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
    void setUpParcels();
    bool mayBePaid(const book::SlipSums &sums);
    void offerTransferForm();
    void offerParcelOf(const book::SavedHeader &slip);
    void beginParcel();

    std::unique_ptr<Ui::frmOut> m_ui;
    bool m_isClosed = false;    // the slip that ends
    bool m_isOut = false;       // its note was printed or saved
    book::SavedHeader m_last{}; // the sale that was closed last
};

} // namespace slips

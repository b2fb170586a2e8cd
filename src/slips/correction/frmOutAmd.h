#pragma once

#include "slips/correction/slip_correction_screen.h"

namespace slips
{

/// Corrects a customer's slips: sales, which it prints anew, receipts and carried balances.
class frmOutAmd : public SlipCorrectionScreen
{
    Q_OBJECT

public:
    explicit frmOutAmd(workspace::Workspace &workspace, QWidget *parent = nullptr,
                       const book::SlipKind &kind = book::sale);

protected:
    bool reprint(qint64 id) override;
};

} // namespace slips

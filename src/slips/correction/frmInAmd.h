#pragma once

#include "slips/correction/slip_correction_screen.h"

namespace slips
{

/// Corrects a supplier's slips: purchases, payments and carried balances, and stocktakes.
class frmInAmd : public SlipCorrectionScreen
{
    Q_OBJECT

public:
    explicit frmInAmd(workspace::Workspace &workspace, QWidget *parent = nullptr,
                      const book::SlipKind &kind = book::purchase);
};

} // namespace slips

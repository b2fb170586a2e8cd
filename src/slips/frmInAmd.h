#pragma once

#include "slips/slip_correction_screen.h"

namespace slips
{

/// Corrects a supplier's slips: purchases, payments and carried balances, and stocktakes.
class frmInAmd : public SlipCorrectionScreen
{
    Q_OBJECT

public:
    explicit frmInAmd(app::Workspace &workspace, QWidget *parent = nullptr, const SlipKind &kind = purchase);
};

} // namespace slips

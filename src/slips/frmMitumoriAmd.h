#pragma once

#include "slips/slip_correction_screen.h"

namespace slips
{

/// Corrects estimates.
class frmMitumoriAmd : public SlipCorrectionScreen
{
    Q_OBJECT

public:
    explicit frmMitumoriAmd(app::Workspace &workspace, QWidget *parent = nullptr);
};

} // namespace slips

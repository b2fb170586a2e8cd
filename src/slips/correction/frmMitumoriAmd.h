#pragma once

#include "slips/correction/slip_correction_screen.h"

namespace slips
{

/// Corrects estimates, and prints them anew.
class frmMitumoriAmd : public SlipCorrectionScreen
{
    Q_OBJECT

public:
    explicit frmMitumoriAmd(workspace::Workspace &workspace, QWidget *parent = nullptr);

protected:
    bool reprint(qint64 id) override;
};

} // namespace slips

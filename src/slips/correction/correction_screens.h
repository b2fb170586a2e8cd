#pragma once

#include "book/slip_kind.h"

class QWidget;

namespace workspace
{
class Workspace;
}

namespace slips
{

/// Opens the correction screen of \a kind over \a parent, at the slip with the key \a id (0: at the newest),
/// and returns when it is closed.
void openCorrection(workspace::Workspace &workspace, QWidget *parent, const book::SlipKind &kind,
                    qint64 id = 0);

} // namespace slips

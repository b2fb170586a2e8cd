#include "slips/correction_screens.h"

#include "slips/frmInAmd.h"
#include "slips/frmMitumoriAmd.h"
#include "slips/frmOutAmd.h"

#include <QGuiApplication>

namespace slips
{

namespace
{

std::unique_ptr<SlipCorrectionScreen> screenFor(app::Workspace &workspace, QWidget *parent,
                                                const SlipKind &kind)
{
    if (kind == estimate)
        return std::make_unique<frmMitumoriAmd>(workspace, parent);
    if (kind.party == Party::Customer)
        return std::make_unique<frmOutAmd>(workspace, parent, kind);
    return std::make_unique<frmInAmd>(workspace, parent, kind);
}

} // namespace

void openCorrection(app::Workspace &workspace, QWidget *parent, const SlipKind &kind, qint64 id)
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const auto screen = screenFor(workspace, parent, kind);
    QGuiApplication::restoreOverrideCursor();
    if (id == 0 || screen->openSlip(id))
        screen->exec();
}

} // namespace slips

#include "slips/correction/correction_screens.h"

#include "slips/correction/frmInAmd.h"
#include "slips/correction/frmMitumoriAmd.h"
#include "slips/correction/frmOutAmd.h"

#include <QGuiApplication>

namespace slips
{

namespace
{

std::unique_ptr<SlipCorrectionScreen> screenFor(workspace::Workspace &workspace, QWidget *parent,
                                                const book::SlipKind &kind)
{
    if (kind == book::estimate)
        return std::make_unique<frmMitumoriAmd>(workspace, parent);
    if (kind.party == book::Party::Customer)
        return std::make_unique<frmOutAmd>(workspace, parent, kind);
    return std::make_unique<frmInAmd>(workspace, parent, kind);
}

} // namespace

void openCorrection(workspace::Workspace &workspace, QWidget *parent, const book::SlipKind &kind, qint64 id)
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const auto screen = screenFor(workspace, parent, kind);
    QGuiApplication::restoreOverrideCursor();
    if (id == 0 || screen->openSlip(id))
        screen->exec();
}

} // namespace slips

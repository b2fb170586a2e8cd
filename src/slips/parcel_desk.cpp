#include "slips/parcel_desk.h"

#include "ui/prompts.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace slips
{

bool hasParcelDesk(const workspace::Workspace &workspace) { return bool(workspace.kept<ParcelDesk>()); }

// Enter alone goes on to the next slip: most notes are handed over without a parcel.
void offerParcel(workspace::Workspace &workspace, QWidget *parent, qint64 slip, const QString &number)
{
    const auto desk = workspace.kept<ParcelDesk>();
    if (!desk || !workspace.settings.checked(workspace::keys::offersShipping))
        return;
    const auto sent = desk->words(slip);
    if (sent && sent->isEmpty() &&
        ui::prompts::askCautiously(parent, u"伝票 %1 の発送伝票を作りますか。"_s.arg(number.left(30))))
        desk->begin(parent, slip);
}

} // namespace slips

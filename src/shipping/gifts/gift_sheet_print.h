#pragma once

#include "base/result.h"
#include "printing/DialogFormLayout.h"
#include "printing/renderer.h"
#include "shipping/slips/shipment.h"

#include <vector>

class QWidget;

namespace workspace
{
class Workspace;
class Settings;
} // namespace workspace

namespace shipping
{

/// The gift order sheet of \a parcels, which one sender sends; there is one at least.
base::Result<printing::Document> giftSheetDocument(workspace::Workspace &workspace,
                                                   const std::vector<Shipment> &parcels);

/// Shows it, to be printed or saved as PDF. A failure is told.
void showGiftSheet(workspace::Workspace &workspace, QWidget *parent, const std::vector<Shipment> &parcels);

/// Its form, for 「用紙の調整」, moved in use as \a settings say.
printing::AdjustableForm adjustableGiftSheet(const workspace::Settings &settings);

} // namespace shipping

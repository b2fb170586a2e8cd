#pragma once

#include "base/result.h"
#include "printing/DialogFormLayout.h"
#include "printing/print_offsets.h"
#include "printing/renderer.h"
#include "reports/bills/bill.h"

namespace workspace
{
class Workspace;
}

namespace reports
{

/// What the screen that prints a bill adds to it.
struct BillChoice
{
    bool salesOnly = false; // "当月の売上金額のみを請求" is ticked
};

/// \a bill, as it was computed, ready for the renderer: on the panel's paper, with its company-name options,
/// the stored offsets and the shop's message, and kept as an issued document once it is out. Its remark tells
/// what is wrong with a layout of the shop's own, in whose place the built-in one is.
base::Result<printing::Document> billDocument(workspace::Workspace &workspace, const Bill &bill,
                                              const BillChoice &choice);

/// The forms of bills, for 「用紙の調整」, moved in use as \a settings say.
std::vector<printing::AdjustableForm> adjustableBills(const workspace::Settings &settings);

/// The bill on the paper that the panel names, each item with a specimen, moved by \a steps: what a
/// shopkeeper lays over the form to see how far the print is off.
base::Result<printing::Document> billCalibration(workspace::Workspace &workspace,
                                                 const printing::NoteSteps &steps);

} // namespace reports

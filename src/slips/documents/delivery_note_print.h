#pragma once

#include "base/result.h"
#include "printing/renderer.h"

class QWidget;

namespace workspace
{
class Workspace;
}

namespace slips
{

/// What the screen that prints a note adds to its slip.
struct NoteRequest
{
    qint64 slipId = 0;
    bool inclusive = false;      // "消費税（内税）" is ticked
    bool closed = false;         // the slip is reprinted; no tax line is to come any more
    bool designatedForm = false; // "指定納品書" is ticked
    QString memo{};
};

/// The delivery note ready for the renderer, on the panel's paper or the designated form, with the panel's
/// company-name options and the stored offsets. Its remark tells what is wrong with a layout of the shop's
/// own, in whose place the built-in one is.
base::Result<printing::Document> deliveryNoteDocument(workspace::Workspace &workspace,
                                                      const NoteRequest &request);

/// Shows the delivery note's preview, from which it is printed or saved as PDF. Tells its failures itself.
/// \return whether there is a paper now
bool printDeliveryNote(workspace::Workspace &workspace, QWidget *parent, const NoteRequest &request);

} // namespace slips

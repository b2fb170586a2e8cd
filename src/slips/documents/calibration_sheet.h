#pragma once

#include "base/result.h"
#include "printing/print_offsets.h"
#include "printing/renderer.h"

namespace workspace
{
class Workspace;
}

namespace slips
{

/// The delivery note on the paper that the panel names, each item with a specimen, moved by \a steps: what a
/// shopkeeper lays over the form to see how far the print is off.
base::Result<printing::Document> calibrationSheet(workspace::Workspace &workspace,
                                                  const printing::NoteSteps &steps);

} // namespace slips

#pragma once

#include "walker.h"

namespace app
{
class frmAMain;
}

namespace workspace
{
class Workspace;
}

namespace tour
{

/// Opens a file of the earlier program, has it converted, looks at what became of it, and goes back to the
/// file that was open.
void convertOldFile(Walker &walker, workspace::Workspace &workspace, app::frmAMain &window,
                    const QDir &folder);

} // namespace tour

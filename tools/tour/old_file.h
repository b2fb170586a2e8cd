#pragma once

#include "walker.h"

namespace app
{
class Workspace;
class frmAMain;
} // namespace app

namespace tour
{

/// Opens a file of the earlier program, has it converted, looks at what became of it, and goes back to the
/// file that was open.
void convertOldFile(Walker &walker, app::Workspace &workspace, app::frmAMain &window, const QDir &folder);

} // namespace tour

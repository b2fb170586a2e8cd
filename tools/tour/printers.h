#pragma once

#include "walker.h"

namespace workspace
{
class Workspace;
}

namespace app
{
class frmAMain;
}

namespace tour
{

/// Sets the printers up, one for cut paper and one for continuous forms, which print nothing here.
void setPrintersUp(Walker &walker, workspace::Workspace &workspace, app::frmAMain &window);

} // namespace tour

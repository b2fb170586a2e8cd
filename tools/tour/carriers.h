#pragma once

#include <QDir>

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

class Walker;

/// Writes parcels to a carrier's file, mends what does not fit, and takes the tracking numbers that come
/// back.
void handToCarriers(Walker &walker, workspace::Workspace &workspace, app::frmAMain &window,
                    const QDir &folder);

} // namespace tour

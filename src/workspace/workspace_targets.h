#pragma once

#include <QString>

namespace workspace
{

class Workspace;

/// Whether a new database file can be made under \a name: in a folder that exists, and none of \a current,
/// the initial file, and the backup, which the program's end writes over.
bool isPossibleTarget(const Workspace &workspace, const QString &name, const QString &current);

} // namespace workspace

#pragma once

#include <QString>

namespace workspace
{

class Workspace;

/// Whether \a name is the open database, the initial file, a backup, or another file that is called a
/// database: no papers and lists are written over it.
bool isDatabase(const Workspace &workspace, const QString &name);

/// Whether a new database file can be made under \a name: in a folder that exists, and none of \a current,
/// the initial file, and the backups, which are the program's own.
bool isPossibleTarget(const Workspace &workspace, const QString &name, const QString &current);

} // namespace workspace

#pragma once

#include "base/result.h"

#include <QString>

namespace db
{

/// What the first bytes of a file say about it.
enum class OldFormat {
    None,  ///< not a file of the old engine, or not readable
    Jet,   ///< versions 3 and 4, which the users' files have
    Newer, ///< of that engine's successors, which this program never worked with
};

/// Looks at the header of \a fileName only. Must not be called for a file that this process has open.
OldFormat oldFormatOf(const QString &fileName);

/// Whether \a fileName can be read as a file of the old engine: readable, of a known version, whole pages,
/// without a password. The error says which of these it is not.
base::Status checkOldFile(const QString &fileName);

/// Renames \a fileName, when it is of the old engine, so that a file of ours can take its place: the users'
/// old files are never written over. The new name has the day on which it was last written in. Nothing
/// happens to any other file.
base::Status putOldFileAside(const QString &fileName);

} // namespace db

#pragma once

#include "base/progress.h"
#include "base/result.h"

#include <functional>

namespace base
{
class Replacement;
}

namespace db
{

class Connection;
class PlainHandle;
class UseMark;

/// How a database file takes the place of another one.
struct Replacing
{
    /// Asked under the exclusive mark, when the new file is complete as \a copy: under which name the old one
    /// stays. Empty: it does not.
    std::function<QString(const QString &copy)> keepAs = {};
    int patience = 0; // ms: so long another program may be about the same
};

/// Keeps the replaced file as \a name.
Replacing keptAs(const QString &name);

/// Copies the open database, consistent even while another program writes to it, to \a target: written
/// beside it under a name of its own, flushed, and renamed over it, so that an older file of that name is
/// lost only when the new one is complete.
base::Status copyDatabase(Connection &connection, const QString &target,
                          const base::Progress &progress = base::unwatched, const Replacing &how = {});
base::Status copyDatabase(const PlainHandle &source, const QString &target,
                          const base::Progress &progress = base::unwatched);
/// The same for a file that this program has not open.
base::Status copyDatabase(const QString &source, const QString &target,
                          const base::Progress &progress = base::unwatched, const Replacing &how = {});
/// The same under an exclusive mark that the caller has set on \a target.
base::Status copyDatabase(const QString &source, const QString &target, const UseMark &mark,
                          const Replacing &how, const base::Progress &progress = base::unwatched);

/// Puts the closed and complete database file \a from in its place. Fails when another program has the file
/// open that stands there. A journal that a program left beside that one when it broke off is played back, or
/// goes with it: it would be played back into the new one.
base::Status replaceDatabase(base::Replacement &from, const Replacing &how = {});
/// The same under an exclusive mark that the caller has set on its target.
base::Status replaceDatabase(base::Replacement &from, const UseMark &mark, const Replacing &how = {});

/// Copies the closed file \a source with its rights to \a target in the same way, byte for byte; fails when
/// \a target exists.
base::Status copyFile(const QString &source, const QString &target,
                      const base::Progress &progress = base::unwatched);

} // namespace db

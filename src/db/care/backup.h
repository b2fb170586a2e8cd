#pragma once

#include "base/progress.h"
#include "base/result.h"

namespace db
{

class Connection;
class PlainHandle;
class UseMark;

/// Copies the open database, consistent even while another program writes to it, to \a target: written
/// beside it under a temporary name, flushed, and renamed over it, so that an older file of that name is
/// lost only when the new one is complete.
base::Status copyDatabase(Connection &connection, const QString &target,
                          const base::Progress &progress = base::unwatched);
base::Status copyDatabase(const PlainHandle &source, const QString &target,
                          const base::Progress &progress = base::unwatched);
/// The same for a file that this program has not open.
base::Status copyDatabase(const QString &source, const QString &target,
                          const base::Progress &progress = base::unwatched);

/// Puts the closed and complete database file \a from in the place of \a target. A journal that a program
/// left beside the old file when it broke off goes with it: it would be played back into the new one.
/// Fails when another program has \a target open.
base::Status replaceDatabase(const QString &from, const QString &target);
/// The same under an exclusive mark that the caller has set on \a target.
base::Status replaceDatabase(const QString &from, const QString &target, const UseMark &mark);

/// Copies the closed file \a source to \a target in the same way, byte for byte; fails when \a target exists.
base::Status copyFile(const QString &source, const QString &target,
                      const base::Progress &progress = base::unwatched);

} // namespace db

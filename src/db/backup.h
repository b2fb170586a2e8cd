#pragma once

#include "db/result.h"

namespace db
{

class Connection;

/// Copies the open database, consistent even while another program writes to it, to \a target: written
/// beside it under a temporary name, flushed, and renamed over it, so that an older file of that name is
/// lost only when the new one is complete.
Status copyDatabase(Connection &connection, const QString &target);

/// Copies the closed file \a source to \a target in the same way; fails when \a target exists.
Status copyFile(const QString &source, const QString &target);

} // namespace db

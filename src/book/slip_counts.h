#pragma once

#include "book/slip_selection.h"
#include "db/connection.h"

#include <QHash>

// Headers of slips alone: whether there are any, and how many.
namespace book
{

/// Whether there are slips of \a kind.
base::Result<bool> hasSlips(db::Connection &connection, const SlipKind &kind);

/// How many slips \a selection has, whatever their lines.
base::Result<qint64> countSlips(db::Connection &connection, const Selection &selection);

/// How many slips each counterpart of \a party has; those without any are left out.
base::Result<QHash<qint64, int>> slipsOfEach(db::Connection &connection, Party party);

} // namespace book

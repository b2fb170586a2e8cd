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

/// The lowest key from \a next on that no slip of \a party's kinds refers to: \a next itself unless the
/// slips of deleted counterparts are left. A new counterpart under such a key would take over their slips,
/// and what they owe. To be asked again for each of several new counterparts, inside the transaction that
/// adds them.
base::Result<qint64> keyWithoutSlips(db::Connection &connection, Party party, qint64 next);

/// How many slips each counterpart of \a party has; those without any are left out.
base::Result<QHash<qint64, int>> slipsOfEach(db::Connection &connection, Party party);

} // namespace book

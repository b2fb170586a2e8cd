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

/// Upon 発行控: the documents that were issued of slips of \a party's kinds.
Condition documentsOf(Party party);

/// The lowest key from \a next on that no slip of \a party's kinds refers to, and no document that was issued
/// of one; for a customer, no shipment and no address that was printed either: \a next itself unless those of
/// deleted counterparts are left. A new counterpart under such a key would take over their slips, what they
/// owe, their shipments, and the copies of what they were sent. To be asked again for
/// each of several new counterparts, inside the transaction that adds them.
base::Result<qint64> keyWithoutSlips(db::Connection &connection, Party party, qint64 next);

/// How many slips each counterpart of \a party has; those without any are left out.
base::Result<QHash<qint64, int>> slipsOfEach(db::Connection &connection, Party party);

} // namespace book

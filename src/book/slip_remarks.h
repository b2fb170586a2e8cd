#pragma once

#include "book/slip_selection.h"
#include "db/connection.h"

#include <unordered_map>

namespace book
{

/// The remarks (備考) of the slips of \a selection that have one, by their keys.
base::Result<std::unordered_map<qint64, QString>> slipRemarks(db::Connection &connection,
                                                              const Selection &selection);

} // namespace book

#pragma once

#include "base/progress.h"
#include "book/slip_selection.h"
#include "db/connection.h"

namespace book
{

/// Calls \a work for one slice of all slips after the other, a few thousand each, so that reading a large
/// book can be watched and stopped. A slice is a condition upon 入出庫マスター. They are cut by what 日付
/// holds, whether it is a day or not: books are written in the order of days, so that a slice lies together
/// in the file, and the slips of a kind are found in it by the index.
base::Status forSlipSlices(db::Connection &connection, const base::Progress &progress,
                           const std::function<base::Status(const Condition &slice)> &work);

} // namespace book

#pragma once

#include "base/progress.h"
#include "db/connection.h"

namespace book
{

/// Calls \a work for one range after the other of 入出庫マスター's keys, a few thousand slips each, so that
/// reading a large book can be watched and stopped. A range lies after its first and up to its second end.
base::Status forSlipBlocks(db::Connection &connection, const base::Progress &progress,
                           const std::function<base::Status(qint64 after, qint64 upTo)> &work);

} // namespace book

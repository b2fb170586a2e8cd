#pragma once

#include "db/connection.h"
#include "db/progress.h"

namespace slips
{

/// Calls \a work for one range after the other of 入出庫マスター's keys, a few thousand slips each, so that
/// reading a large book can be watched and stopped. A range lies after its first and up to its second end.
db::Status forSlipBlocks(db::Connection &connection, const db::Progress &progress,
                         const std::function<db::Status(qint64 after, qint64 upTo)> &work);

} // namespace slips

#include "book/slip_blocks.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

constexpr qint64 blockSize = 4000; // slips: a few hundredths of a second each

} // namespace

base::Status forSlipBlocks(db::Connection &connection, const base::Progress &progress,
                           const std::function<base::Status(qint64 after, qint64 upTo)> &work)
{
    const auto total = connection.keys(u"SELECT COUNT(*) FROM 入出庫マスター"_s);
    if (!total)
        return total.error();
    qint64 after = std::numeric_limits<qint64>::min();
    for (qint64 done = 0;; done += blockSize) {
        if (!progress(std::min(done, total->front()), total->front()))
            return base::cancelled();
        const auto boundary = connection.keys(
            u"SELECT ID FROM 入出庫マスター WHERE ID > ? ORDER BY ID LIMIT 1 OFFSET ?"_s, {after, blockSize});
        if (!boundary)
            return boundary.error();
        const bool last = boundary->empty();
        const qint64 upTo = last ? std::numeric_limits<qint64>::max() : boundary->front();
        if (const base::Status worked = work(after, upTo); !worked)
            return worked;
        if (last)
            return {};
        after = upTo;
    }
}

} // namespace book

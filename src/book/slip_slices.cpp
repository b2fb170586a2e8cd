#include "book/slip_slices.h"

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

constexpr qint64 sliceSize = 4000; // slips: a few hundredths of a second each

// The dates after \a after that the next slice takes; all that are left where it is the last one.
struct Slice
{
    Condition condition;
    QVariant upTo; // invalid: the last one
};

base::Result<Slice> nextSlice(db::Connection &connection, const QVariant &after)
{
    Slice slice;
    slice.condition =
        after.isValid() ? Condition{u"日付 > ?"_s, {after}} : Condition{u"日付 IS NOT NULL"_s, {}};
    const auto boundary =
        connection.select(u"SELECT 日付 FROM 入出庫マスター WHERE "_s + slice.condition.sql +
                              u" ORDER BY 日付, ID LIMIT 1 OFFSET ?"_s,
                          slice.condition.values + QVariantList{sliceSize});
    if (!boundary)
        return boundary.error();
    if (!boundary->isEmpty()) {
        slice.upTo = boundary->rows.front().front();
        slice.condition &= {u"日付 <= ?"_s, {slice.upTo}};
    }
    return slice;
}

} // namespace

base::Status forSlipSlices(db::Connection &connection, const base::Progress &progress,
                           const std::function<base::Status(const Condition &slice)> &work)
{
    const auto total = connection.integers(u"SELECT COUNT(*) FROM 入出庫マスター"_s);
    if (!total)
        return total.error();
    if (const base::Status worked = work({u"日付 IS NULL"_s, {}}); !worked)
        return worked;
    QVariant after;
    for (qint64 done = 0;; done += sliceSize) {
        if (!progress(std::min(done, total->front()), total->front()))
            return base::cancelled();
        const auto slice = nextSlice(connection, after);
        if (!slice)
            return slice.error();
        if (const base::Status worked = work(slice->condition); !worked)
            return worked;
        if (!slice->upTo.isValid())
            return {};
        after = slice->upTo;
    }
}

} // namespace book

#pragma once

#include "base/exact_sum.h"
#include "base/progress.h"
#include "base/result.h"

#include <QDate>
#include <QVariant>

#include <optional>
#include <vector>

namespace db
{
class Connection;
}

// Two rows of the register that are one customer, made one.
namespace registers
{

/// A field of both, as it is stored, and whether the one that stays takes the other's: where it has nothing
/// but what every new row starts with.
struct MergedField
{
    QString column; // of 納品先
    QVariant kept, gone;
    bool takesGone = false;

    [[nodiscard]] bool isFilled() const { return takesGone && isEmpty(kept); }
    [[nodiscard]] bool isReplaced() const { return takesGone && !isEmpty(kept); }
    [[nodiscard]] QVariant after() const { return takesGone ? gone : kept; }
    [[nodiscard]] bool isLost() const
    {
        return !takesGone && !isEmpty(kept) && !isEmpty(gone) && kept != gone;
    }

    static bool isEmpty(const QVariant &value) { return value.toString().isEmpty(); }

    friend bool operator==(const MergedField &, const MergedField &) = default;
};

/// What the two owe, yen.
struct MergeBalances
{
    base::ExactSum kept, gone;

    [[nodiscard]] double after() const;
};

/// What merging the customer \a gone into \a kept would do, as it is shown before it is done.
struct MergePlan
{
    qint64 kept = 0; // 納品先ID
    qint64 gone = 0;
    QVariant keptVersion, goneVersion; // 版, as they were compared
    std::vector<MergedField> fields;
    qint64 slips = 0;                           // of the one that goes, which follow
    qint64 shipments = 0;                       // the same
    qint64 keptSlips = 0;                       // of the other
    QString refusal;                            // why it must not be done; empty: it may
    std::optional<MergeBalances> balances = {}; // where they were shown

    /// Whether one bill will be taxed where there were two.
    [[nodiscard]] bool isTaxedTogether() const;
};

/// Fails when one of them is no longer there.
base::Result<MergePlan> planMerge(db::Connection &connection, qint64 kept, qint64 gone);

/// What the two of \a plan owe; a book of a million slips is read for some seconds.
base::Result<MergeBalances> mergeBalances(db::Connection &connection, const MergePlan &plan,
                                          const base::Progress &progress);

/// Does what \a plan says, in one transaction: the slips and shipments of the one that goes, and what was
/// addressed to him, become those of the other, which gets what it lacks, its search key and \a today as the
/// day of its last change; then the row goes. Fails, with everything as it was, when one of the two was
/// changed meanwhile or owes another sum than was shown, when one of them has a slip that somebody is
/// entering, and for a plan that is refused.
base::Status mergeCustomers(db::Connection &connection, const MergePlan &plan, const QDate &today);

} // namespace registers

#pragma once

#include "base/exact_sum.h"
#include "book/slip_kind.h"
#include "db/connection.h"

#include <QDate>

#include <optional>
#include <vector>

// What a counterpart had of late. A book of a million slips answers from the few that are asked for.
namespace book
{

struct RecentSlip
{
    qint64 id = 0;
    SlipKind kind = sale;
    QString date; // yyyy-MM-dd; empty where the slip has none that is a day
    QString number;
    double amount = 0; // yen, its tax included; not a number where a line has none
};

/// The newest \a most slips of \a counterpart, whatever their kinds, the newest first.
base::Result<std::vector<RecentSlip>> recentSlips(db::Connection &connection, Party party, qint64 counterpart,
                                                  int most);

/// Goods that come again and again.
struct UsualGoods
{
    QString product;
    QString specification;
    int times = 0;                 // slips that sold it, less those that took it back
    qint64 lastSlip = 0;           // that sold it
    QString lastDate{};            // its day, yyyy-MM-dd
    std::optional<double> price{}; // and its price
};

/// What the newest \a slips slips of \a kind sold most often, at most \a most goods; of those that are alike
/// the one that came last.
base::Result<std::vector<UsualGoods>> usualGoods(db::Connection &connection, const SlipKind &kind,
                                                 qint64 counterpart, int slips, int most);

/// The day of the oldest slip of \a counterpart that enters its balance; an invalid one when there is none.
base::Result<QDate> oldestDay(db::Connection &connection, Party party, qint64 counterpart);

/// What the slips of \a counterpart add to its balance whose 日付 is written from \a from up to before \a
/// before, a day of the calendar or not: pieces that follow each other have each slip once. Without \a from
/// also those before every day and those without one, without \a before all later ones.
base::Result<base::ExactSum> balancePart(db::Connection &connection, Party party, qint64 counterpart,
                                         const QDate &from, const QDate &before);

} // namespace book

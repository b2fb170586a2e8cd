#pragma once

#include "book/counterpart_name.h"
#include "book/period.h"
#include "book/slip_kind.h"
#include "db/condition.h"

#include <QVariant>

#include <functional>
#include <optional>
#include <vector>

// Which slips are read, summed up, listed or guarded: the one place that puts into SQL what a kind, a day or
// a line of tax is.
namespace book
{

/// The days of slips. One whose 日付 is missing or no day of the calendar is older than every day.
struct Days
{
    QDate from; // an invalid one: since ever, slips without a day included
    QDate to;   // an invalid one: without end
    bool onlyUndated = false;

    static Days all() { return {}; }
    static Days within(const Period &period) { return {period.from, period.to}; }
    static Days upTo(const QDate &day) { return {{}, day}; }
    static Days before(const QDate &day) { return {{}, day.addDays(-1)}; }
    static Days none() { return {{}, {}, true}; }
};

/// Goods of one name, specification and unit; what is not written is an empty text.
struct Goods
{
    QString product;
    QString specification;
    QString unit;

    bool operator==(const Goods &) const = default;
};

/// Which lines of the slips.
enum class LinesOf { All, Goods, Tax };

/// Which slips, and which of their lines.
struct Selection
{
    std::vector<SlipKind> kinds;
    std::optional<CounterpartKey> counterpart{}; // none: everybody's; an empty key: slips without counterpart
    std::optional<std::vector<qint64>> counterparts{}; // of these alone; none: of whomever else it takes
    Days days{};
    LinesOf lines = LinesOf::All;
    std::optional<Goods> goods{};
};

using db::Condition;

/// Upon 入出庫マスター: the slips of \a selection, whatever its lines.
Condition slipsOf(const Selection &selection);

/// Upon 入出庫サブ: the lines of \a selection; an empty condition where it takes them all.
Condition linesOf(const Selection &selection);

} // namespace book

template <>
struct std::hash<book::Goods>
{
    std::size_t operator()(const book::Goods &goods) const noexcept
    {
        return qHashMulti(0, goods.product, goods.specification, goods.unit);
    }
};

#pragma once

#include "base/exact_sum.h"
#include "base/progress.h"
#include "book/slip_selection.h"
#include "book/tax_rates.h"
#include "db/connection.h"

#include <functional>

// Sums over the lines of slips, added up by the database: a shop has millions of them.
namespace book
{

/// What is added up by itself, beside the kinds of slips.
struct Grouping
{
    bool byCounterpart = false;
    bool byRate = false;      // of tax: class and rate of the line, else the rate of its slip
    bool byBasis = false;     // slips whose prices include the tax apart from others
    bool byDay = false;       // of supply: of what is given back that of its slip, where that is known
    QDate since{};            // slips of this day and later ones apart from older ones
    bool withTax = false;     // what tax lines make of the sum
    bool withLastDay = false; // the last day
};

/// The sum of a group of lines.
struct MovementSum
{
    SlipKind kind = sale;
    CounterpartKey counterpart;
    bool isSince = false; // of Grouping::since or later
    std::optional<GoodsTax> taxClass;
    std::optional<double> taxRate; // percent; a book from elsewhere may have none
    std::optional<bool> inclusive; // of Grouping::byBasis; empty: not known
    QString day;                   // of Grouping::byDay: yyyy-MM-dd; empty where the slip has none

    base::ExactSum
        amount;         // yen, as written: a receipt is positive; none where one of the lines has no number
    base::ExactSum tax; // what tax lines make of that
    qint64 lines = 0;
    qint64 taxLines = 0;
    QString lastDay;      // yyyy-MM-dd; empty where no slip has a day; slips without lines count
    qint64 firstSlip = 0; // the lowest ID among the lines; 0 without any

    /// Its amount in the balance of the counterpart.
    [[nodiscard]] base::ExactSum inBalance() const;
};

using TakeSum = std::function<void(const MovementSum &)>;

/// Adds up \a selection by groups. \a take gets each group once or in several parts, which it adds up: what
/// reaches back to the beginning for all counterparts is read a few thousand slips at a time, so that a large
/// book can be watched and stopped.
base::Status sumMovements(db::Connection &connection, const Selection &selection, const Grouping &grouping,
                          const base::Progress &progress, const TakeSum &take);

} // namespace book

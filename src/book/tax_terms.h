#pragma once

#include "base/result.h"
#include "book/tax_rates.h"

#include <vector>

namespace db
{
class Connection;
}

// The table 税率 as a person edits it: what the law says a rate is, from when to when, and whether the shop
// goes by it.
namespace book
{

/// A row of the table 税率.
struct TaxTerm
{
    qint64 id = 0; // 0: not stored yet
    GoodsTax taxClass = GoodsTax::Standard;
    QDate from{};
    QDate to{};         // an invalid one: without end
    double percent = 0; // 10
    bool inForce = true;

    bool operator==(const TaxTerm &) const = default;
};

/// "標準", "軽減（飲食料品）", "軽減（新聞）", "非課税" or "対象外".
QString nameOf(GoodsTax taxClass);

/// A rate in few words: "10%", "軽減8%"; of what is not taxed the name of its class.
QString rateName(GoodsTax taxClass, double percent);

/// All rows, by class and date; those of no class or without a first day are left out.
base::Result<std::vector<TaxTerm>> taxTerms(db::Connection &connection);

/// Whether \a term can be stored: a rate from 0 to 100 percent, of a class that is taxed, a first day and a
/// last one that is not before it. What is wrong otherwise, to be told.
base::Status checkTerm(const TaxTerm &term);

/// Those of \a terms in force that have a day of \a term's and are of its class, but for itself. Nothing for
/// one that is not in force: it disturbs nobody until it is.
std::vector<TaxTerm> overlapping(const std::vector<TaxTerm> &terms, const TaxTerm &term);

/// \a terms with \a term put in or changed, and room made for it: those that overlap end the day before it
/// begins or begin the day after it ends, one that reaches beyond it on both sides goes on behind it as a new
/// row, and one that lies wholly within it is put out of force. So a reduction for two years is followed by
/// the rate that it reduced.
std::vector<TaxTerm> withRoomFor(const std::vector<TaxTerm> &terms, const TaxTerm &term);

/// The rates of those of \a terms that are in force.
TaxRates inForce(const std::vector<TaxTerm> &terms);

/// The first day that lacks a rate of everyday goods: between two of their terms, behind the last one, or
/// \a today where none has begun by then. An invalid one when there is none.
QDate firstGap(const std::vector<TaxTerm> &terms, const QDate &today);

/// Makes the table be \a after where it is \a before, in one change. Fails without a change when another
/// program has changed it meanwhile, or where a term cannot be stored or overlaps another one.
base::Status storeTaxTerms(db::Connection &connection, const std::vector<TaxTerm> &before,
                           const std::vector<TaxTerm> &after);

} // namespace book

#pragma once

#include "book/tax_terms.h"

namespace book
{

/// One of the ways in which a line can be taxed.
struct TaxChoice
{
    QString caption; // "10%", "軽減8% 食品", "非課税", "経過措置 8%"
    LineTax tax;
    bool isTransitional = false; // a rate of an earlier time, by a transitional rule (経過措置)
};

/// What a line of a slip of \a date can be taxed as: each class with its rate of that day, then the rates of
/// each class of earlier days, the latest first, which transitional rules go on with. Empty for a day without
/// a rate.
std::vector<TaxChoice> taxChoices(const std::vector<TaxTerm> &terms, const QDate &date);

/// The first of \a choices that goods of \a taxClass are taxed at by themselves; the first of all where there
/// is none.
qsizetype choiceOf(const std::vector<TaxChoice> &choices, GoodsTax taxClass);

/// What a list of lines says of a line's \a tax beside the slip's own: "※8%", "8%" of everyday goods at
/// another rate than the slip's, "非課税"; nothing for the slip's own.
QString taxMark(const std::optional<LineTax> &tax);

} // namespace book

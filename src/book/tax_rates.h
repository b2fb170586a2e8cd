#pragma once

#include "base/result.h"

#include <QDate>
#include <QVariant>

#include <optional>
#include <vector>

namespace db
{
class Connection;
}

namespace book
{

/// What a line or a product is taxed as: the numbers of 税区分.
enum class GoodsTax {
    Standard = 0,
    Food = 1,       // reduced: 軽減（飲食料品）
    Newspapers = 2, // reduced: 軽減（新聞）
    Exempt = 3,     // 非課税
    OutOfScope = 4, // 対象外
};

/// Whether there is a rate for goods of \a taxClass.
bool isTaxed(GoodsTax taxClass);

/// Whether \a taxClass is food or newspapers, whose rate is a reduced one.
bool isReduced(GoodsTax taxClass);

/// The class that a stored 税区分 means; empty for NULL and for a number that is none, which is the slip's
/// own.
std::optional<GoodsTax> goodsTaxFrom(const QVariant &stored);

/// What a line is taxed at.
struct LineTax
{
    GoodsTax taxClass = GoodsTax::Standard;
    double rate = 0; // percent

    bool operator==(const LineTax &) const = default;
};

/// \a tax as a line of a slip of \a slipRate percent keeps it: nothing where it is the slip's own.
std::optional<LineTax> besideSlips(const LineTax &tax, double slipRate);

/// The rates of consumption tax by date and class.
class TaxRates
{
public:
    /// A rate from its first to its last day, both included.
    struct Term
    {
        GoodsTax taxClass = GoodsTax::Standard;
        QDate from;
        QDate to;           // an invalid one: without end
        double percent = 0; // 10
    };

    explicit TaxRates(std::vector<Term> terms);

    /// The one rate, of \a percent, of a shop that sets it by hand: on every day, for all that is taxed.
    static TaxRates keptByHand(double percent);

    /// The table 税率, what is in force of it (tax_terms.h).
    static base::Result<TaxRates> read(db::Connection &connection);

    /// Percent on the day \a date of supply. Where several terms have the day, the one that began last
    /// counts: a reduction for two years stands in the midst of what it reduces. A reduced class without a
    /// term on that day is taxed as everything else; before there was the tax it is 0, and so it is of what
    /// is not taxed. Unless the rate is kept by hand, nothing for an invalid date and for a day that the
    /// table lacks: a slip without its tax would be the worst guess.
    [[nodiscard]] std::optional<double> on(const QDate &date, GoodsTax taxClass = GoodsTax::Standard) const;

    /// Whether goods of \a taxClass had a rate of their own on \a date: food had none before 2019-10-01.
    [[nodiscard]] bool has(const QDate &date, GoodsTax taxClass) const { return termOn(date, taxClass); }

private:
    [[nodiscard]] const Term *termOn(const QDate &date, GoodsTax taxClass) const;

    std::vector<Term> m_terms;
    std::optional<double> m_byHand;
};

} // namespace book

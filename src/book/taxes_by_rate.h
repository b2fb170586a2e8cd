#pragma once

#include "base/result.h"
#include "book/tax_rates.h"

#include <optional>
#include <vector>

// The one place that computes the tax of a document: a slip, a delivery note, a bill. The law rounds once for
// each rate of a document (消費税法施行令第70条の10), and so is it done here, toward zero; adding up rounded
// taxes of lines is forbidden.
namespace book
{

/// What amounts are.
enum class Basis {
    Net,   // the tax comes on top of them
    Gross, // they include it
};

/// An amount of a document, of one line or of several.
struct TaxableAmount
{
    double amount = 0; // yen; negative for a return
    double rate = 0;   // percent: of a return that of its sale
    GoodsTax taxClass = GoodsTax::Standard;
    std::optional<Basis> basis{}; // empty: that of the document
};

/// What the amounts of one rate come to. Net and tax make the gross.
struct RateTax
{
    GoodsTax taxClass = GoodsTax::Standard; // Food for all that is reduced
    double rate = 0;                        // percent
    double net = 0;                         // yen
    double tax = 0;
    double gross = 0;
};

/// The taxes of a document whose amounts are of \a basis, one for each rate, the standard ones first. Reduced
/// goods of one rate are taxed together, apart from standard ones of the same rate. Where a rate has both net
/// and gross amounts they are brought to \a basis, unrounded, before they are taxed. Fails for rates below 0
/// and over 100 and for amounts that cannot be counted.
base::Result<std::vector<RateTax>> taxesByRate(const std::vector<TaxableAmount> &amounts, Basis basis);

/// Whether \a taxes are of the standard rate alone, and that is \a slipRate percent: what a slip says by
/// itself, so that its tax line need not.
bool isSlipsOwn(const std::vector<RateTax> &taxes, double slipRate);

/// \a taxes together, yen.
double sumOf(const std::vector<RateTax> &taxes);

/// The taxes of all rates together, yen.
base::Result<double> taxOf(const std::vector<TaxableAmount> &amounts, Basis basis);

/// The tax that \a amounts include, not rounded. For the box of the slip screens alone, which has always
/// shown it so.
base::Result<double> unroundedTaxIn(const std::vector<TaxableAmount> &amounts);

} // namespace book

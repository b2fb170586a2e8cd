#pragma once

#include "book/slip_reader.h"
#include "book/taxes_by_rate.h"

#include <optional>

namespace book
{

/// What is printed of a slip of goods, right to the yen.
struct PrintedSlip
{
    Slip slip;                         // with the tax line, where one is due
    double total = 0;                  // yen
    std::optional<double> includedTax; // whole yen, of prices that include it
    double rate = 0;                   // percent, of goods that have none of their own
};

/// How the tax of a slip to be printed is decided.
struct PrintedTax
{
    bool inclusive = false;          // prices include the tax
    std::optional<TaxRates> closing; // at which closing the slip will tax it; empty: it is closed
};

/// Whether \a slip has its tax line.
bool hasTaxLine(const Slip &slip);

/// The goods among \a lines with their rates; \a rate, percent, of those that have none of their own.
std::vector<TaxableAmount> taxableGoods(const std::vector<SlipLine> &lines, double rate);

/// All of \a lines so, where prices include the tax: a tax line that stands among them all the same is part
/// of the price.
std::vector<TaxableAmount> taxableAll(const std::vector<SlipLine> &lines, double rate);

/// The tax lines that a slip of \a slipRate percent gets of \a taxes, one for each that is not 0. A line
/// keeps which rate it is of, unless that is the only one and the slip's own, and says so in its 規格 where
/// there are several.
std::vector<SlipLine> taxLinesOf(const std::vector<RateTax> &taxes, double slipRate);

/// The tax lines that closing a slip of \a goods stores, one for each rate whose tax is not 0. \a rate: as
/// above; \a slipRate: percent that the slip itself says.
base::Result<std::vector<SlipLine>> taxLinesFor(const std::vector<SlipLine> &goods, double rate,
                                                double slipRate);

/// The slip of a customer as its paper shows it: one that is still open gets the tax lines that closing it
/// will add.
base::Result<PrintedSlip> taxedForPrint(Slip slip, const PrintedTax &tax);

} // namespace book

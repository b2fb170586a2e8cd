#pragma once

#include "base/result.h"
#include "book/slip_kind.h"
#include "book/taxes_by_rate.h"

#include <QString>

// The one place that computes amounts, and what a slip's tax depends on. Taxes themselves: taxes_by_rate.h.
// Amounts are yen.
namespace book
{

/// The greatest amount, quantity or price either way: up to here a double keeps four decimals exactly.
inline constexpr double greatestAmount = 900'000'000'000;

/// Whether \a value is a number up to greatestAmount either way.
bool isCountable(double value);
/// What to tell of one that is not.
base::Error amountTooGreat();

/// \a value, or the whole number that it would be but for the binary rounding of the few operations behind
/// it: decimal fractions have no exact binary form, and 0.29 × 100 comes out as 28.999999999999996. \a
/// magnitude: the greatest number that took part.
double cleaned(double value, double magnitude);
/// It truncated toward zero to whole yen. \a magnitude: where a greater number took part.
double truncatedYen(double value, double magnitude = 0);

/// quantity × price before truncation, free of binary noise: 0.29 × 100 is 29, not 28.999…
/// Fails for a number that is not finite or beyond greatestAmount.
base::Result<double> lineProduct(double quantity, double price);

/// What is stored as 金額: the product truncated toward zero to whole yen.
base::Result<double> lineAmount(double quantity, double price);

/// \a value as an amount of money: to four decimals, a half to the even side, as the currency type of the
/// users' books rounds. Fails as lineProduct() does.
base::Result<double> currency(double value);

/// Whether closing a slip of a counterpart of \a taxClass adds a tax line. \a inclusive: the slip's prices
/// include the tax.
bool taxIsAdded(TaxClass taxClass, bool inclusive);

/// The text of the tax box of a slip whose goods are \a amounts: the tax that closing will add to the slip of
/// a counterpart taxed on delivery, or, where \a showsIncluded, the tax that the prices include; empty
/// otherwise. The box stays empty for a counterpart whose prices include the tax when the clerk has made them
/// exclusive, though closing adds it then.
base::Result<QString> shownTax(const std::vector<TaxableAmount> &amounts, TaxClass taxClass, bool inclusive,
                               bool showsIncluded);

/// The class a counterpart's 消費税区分 means; an empty or unknown one counts as OnDelivery.
TaxClass taxClassFrom(const QString &text);

/// "外税 （納品時）", "外税 （請求時）" or "内税".
QString nameOf(TaxClass taxClass);

} // namespace book

#pragma once

#include "base/exact_sum.h"
#include "book/supplier_registration.h"
#include "book/taxes_by_rate.h"

#include <optional>

// How much of the tax on purchases may be deducted (仕入税額控除) where the supplier issues no qualified
// invoice: less and less from 2023-10-01 on.
namespace book
{

/// Percent of the tax of a purchase of the day \a day that may be deducted without a qualified invoice: 100
/// before there were any.
int deductiblePercent(const QDate &day);

/// \a percent of the tax of purchases at \a rate percent that come to \a amount yen, truncated toward zero to
/// whole yen, once. Computed in whole numbers. Nothing for an amount that is no number, a rate below 0 or
/// over 100 percent and one of more than two decimals.
std::optional<double> deductibleTax(const base::ExactSum &amount, Basis basis, double rate, int percent);

/// What is to be remarked where a purchase of \a day from \a supplier is entered: "登録事業者ではありません
/// （経過措置 70%）"; empty where all of the tax may be deducted, and where nothing is known.
QString deductionRemark(const SupplierRegistration &supplier, const QDate &day);

} // namespace book

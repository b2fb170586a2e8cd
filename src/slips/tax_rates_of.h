#pragma once

#include "book/tax_rates.h"
#include "workspace/workspace.h"

namespace slips
{

/// The rates of tax that the shop works with: those of the table 税率 where it follows that, else the one
/// that the panel of the main window holds.
inline base::Result<book::TaxRates> taxRatesOf(const workspace::Workspace &workspace)
{
    return workspace.panel.followsTaxTable ? book::TaxRates::read(workspace.connection)
                                           : book::TaxRates::keptByHand(workspace.panel.taxRate);
}

/// The rate of a slip of \a date, percent: that of everyday goods.
inline base::Result<double> slipRateOf(const workspace::Workspace &workspace, const QDate &date)
{
    const auto rates = taxRatesOf(workspace);
    return rates ? base::Result<double>(rates->on(date).value_or(0)) : rates.error();
}

} // namespace slips

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

/// The rate of a slip of \a date, percent: that of everyday goods. Fails for a day that the table lacks.
inline base::Result<double> slipRateOf(const workspace::Workspace &workspace, const QDate &date)
{
    const auto rates = taxRatesOf(workspace);
    if (!rates)
        return rates.error();
    const auto rate = date.isValid() ? rates->on(date) : 0;
    return rate ? base::Result<double>(*rate)
                : base::Error{QStringLiteral("「消費税率表」に、%1 の標準の税率がありません。\n"
                                             "「初期設定」の「消費税率表」で登録してください。")
                                  .arg(date.toString(QStringLiteral("yyyy/MM/dd")))};
}

} // namespace slips

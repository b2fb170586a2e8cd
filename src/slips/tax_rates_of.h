#pragma once

#include "book/tax_rates.h"
#include "workspace/workspace.h"

namespace slips
{

/// The rates of tax that the shop works with: the one that the panel of the main window holds.
inline book::TaxRates taxRatesOf(const workspace::Workspace &workspace)
{
    return book::TaxRates::keptByHand(workspace.panel.taxRate);
}

} // namespace slips

#pragma once

#include "reports/bills/bill_sums.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

namespace reports
{

/// What the panel and the settings say of all bills.
inline BillOptions billOptionsOf(const workspace::Workspace &workspace)
{
    BillOptions options;
    if (!workspace.panel.followsTaxTable)
        options.rateByHand = workspace.panel.taxRate;
    options.includedOnBill = workspace.settings.checked(workspace::keys::includedOnBill);
    return options;
}

} // namespace reports

#pragma once

#include "reports/ledgers/ledger_report.h"

namespace reports
{

/// The ledgers and lists there are.
enum class LedgerView {
    Receivable,         // of one customer
    Payable,            // of one supplier
    ReceivableBalances, // of all customers
    PayableBalances,
    Stock, // what there is of each product
    Goods, // what happened to the stock of one
};

/// The columns of \a view's reports.
std::vector<base::Column> columnsOf(LedgerView view);

/// What a screen asks for.
struct LedgerQuery
{
    std::optional<LedgerTarget> whose; // whose ledger; none: nobody is chosen
    book::Goods goods;                 // of which goods
    book::Period period;               // of lists to a day, its end alone counts
    bool leavesOutZeros = false;
};

/// The report of \a view. Fails with the sentence to tell: nobody is chosen, a period that ends before it
/// begins.
base::Result<base::Report> readView(db::Connection &connection, LedgerView view, const LedgerQuery &query,
                                    const base::Progress &progress);

} // namespace reports

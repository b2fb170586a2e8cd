#pragma once

#include "reports/ledgers/ledger.h"

// What the stock has become since the last stocktakes. Movements of goods are counted, never written.
namespace reports
{

/// Goods under one name, specification and unit: quantities in different units cannot be added.
struct StockLine
{
    QString product;
    QString specification;
    QString unit;
    QString counted; // day of the last stocktake, yyyy-MM-dd; empty when there was none
    double stocktake = 0;
    double in = 0;    // purchased since then
    double out = 0;   // sold since then
    double stock = 0; // stocktake + in − out; below 0 when more was sold than is known to have come in
    std::optional<double> price; // of the last purchase, else of the last stocktake
    double amount = 0;           // stock × price in whole yen; 0 without a price
};

struct StockLedger
{
    std::vector<StockLine> lines; // in the order of product, specification and unit
    double total = 0;             // yen
};

/// The stock of all goods at the end of \a day. It begins with the product's last stocktake, all lines of
/// that day together, and with nothing where there was none; a stocktake counts what is there in the evening,
/// so that the purchases and sales of its day are in it. A date that is none is older than every day.
base::Result<StockLedger> readStock(db::Connection &connection, const QDate &day,
                                    const base::Progress &progress);

} // namespace reports

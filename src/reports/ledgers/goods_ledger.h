#pragma once

#include "book/period.h"
#include "book/slip_selection.h"
#include "db/connection.h"

// What one kind of goods had happen to its stock.
namespace reports
{

/// A line of a slip that moved the goods, or counted them.
struct GoodsLine
{
    qint64 slip = 0;
    book::SlipKind kind = book::sale;
    QString date; // yyyy-MM-dd
    QString number;
    QString counterpart; // what it is called in lists
    std::optional<double> quantity;
    std::optional<double> price;
    double stock = 0; // after the line
};

/// brought + in − out + found = stock.
struct GoodsLedger
{
    QString counted;    // day of the last stocktake before the period, yyyy-MM-dd; empty: there was none
    double brought = 0; // the stock before the period
    std::vector<GoodsLine> lines;
    double in = 0; // purchased in the period
    double out = 0;
    double found = 0; // by how much the period's stocktakes found more than the slips say; below 0: less
    double stock = 0; // at the period's end
};

/// The ledger of \a goods, in the order of date, slip and entry; the stock is reckoned as readStock() does. A
/// stocktake counts what is there in the evening, so that it stands after the other slips of its day. The
/// lines of one day's stocktakes add up, and what was reckoned before gives way to them.
base::Result<GoodsLedger> readGoodsLedger(db::Connection &connection, const book::Goods &goods,
                                          const book::Period &period);

} // namespace reports

#pragma once

#include "base/result.h"
#include "shipping/gifts/gift_cells.h"

// What is looked at before the slips of a gift order sheet are printed.
namespace shipping
{

/// What keeps the slip of a line from being printed, and where it is put right.
struct GiftFault
{
    std::size_t row = 0;
    GiftColumn column = GiftColumn::Name1;
    QString text;
};

/// What keeps every slip from being printed: no line that is ticked, a category that is not registered, a
/// sender without a name, no day of acceptance.
base::Status checkHead(db::Connection &connection, const GiftOrder &order);

/// The faults of the ticked lines, in their order.
std::vector<GiftFault> faultsOf(const GiftOrder &order);

/// The ticked lines whose price is that of other goods than theirs, a sentence each: the goods were changed
/// and the price of the last time was left, or goods of their own go at the price of the sheet's.
QStringList priceDoubts(const GiftOrder &order);

/// What may be meant and is asked about once, a sentence each: days before \a today or half a year ahead,
/// what is too long to be read, those prices, a
/// consignee twice in the run, or one to whom the sender has sent of the category in the last weeks. What
/// does not look like a slip's postal code is asked about where slips are printed.
base::Result<QStringList> orderDoubts(db::Connection &connection, const GiftOrder &order, const QDate &today);

/// "3 行目　山田花子": how sentences call a line.
QString rowInWords(const GiftOrder &order, std::size_t row);

} // namespace shipping

#pragma once

#include "shipping/gifts/gift_order.h"

#include "base/column.h"

// The lines of a gift order sheet as the cells of a grid.
namespace shipping
{

enum class GiftColumn {
    Tick,
    Name1,
    Name2,
    Zip,
    Address1,
    Address2,
    Tel,
    Goods,
    Price,
    Carriage,
    Delivery,
    TimeSlot,
    Cooling,
    Memo1,
    Memo2,
    State,
};
inline constexpr int giftColumnCount = 16;

/// Heading and width of a column.
const base::Column &lookOf(GiftColumn column);

/// The term that stands in \a column; none for what each consignee has of his own.
std::optional<GiftTerm> termIn(GiftColumn column);

/// The cell of \a row as it is shown: in the columns of terms the sheet's where it has none of its own, and
/// "－" where it wants none in spite of the sheet.
QString shownCell(const GiftOrder &order, const GiftRow &row, GiftColumn column);

/// What stands in the cell when it is opened: what was typed there.
QString typedCell(const GiftRow &row, GiftColumn column);

/// Puts what a clerk \a typed into the cell. An empty text lets a term be the sheet's again, and a lone dash
/// wants none. A day without its year is the next one from \a accepted on. Fails, and leaves \a row as it
/// was, for what cannot be meant there.
base::Status enterCell(GiftRow &row, GiftColumn column, const QString &typed, const QDate &accepted);

/// The same for what the sheet says of all lines, in the column of a term.
base::Status enterCommon(GiftTerms &terms, GiftColumn column, const QString &typed, const QDate &accepted);

/// How the sheet's own value of a term is shown: "3,980", "2026/12/20".
QString shownCommon(const GiftTerms &terms, GiftTerm term);

} // namespace shipping

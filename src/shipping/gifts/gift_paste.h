#pragma once

#include "shipping/gifts/gift_cells.h"

#include <QMap>

// Lines of a gift order sheet out of a spreadsheet or a CSV file, by way of the clipboard.
namespace shipping
{

/// One line that is pasted: the texts of its cells.
using PastedLine = QMap<GiftColumn, QString>;

/// The lines in \a text: cells with tabs between them, or, where there is none, with commas. A first line of
/// headings says which column is what, and what it does not know is left out; else they stand in the grid's
/// order from \a first on. Fails where there are more of them than the grid has room for, and for a text that
/// nobody means to paste.
base::Result<std::vector<PastedLine>> pastedCells(const QString &text, GiftColumn first);

/// The lines of \a order with \a lines typed over those from \a row on; what goes beyond them is added.
/// Fails, naming line and column, for the first cell that cannot be meant, and for a line whose slip is out.
base::Result<std::vector<GiftRow>> pastedInto(const GiftOrder &order, int row,
                                              const std::vector<PastedLine> &lines);

} // namespace shipping

#pragma once

#include "book/slip_reader.h"

// What is to be remarked of a stored slip that is corrected. Nothing is computed anew by itself: a slip says
// what the clerk wrote, and a remark says where its figures disagree.
namespace slips
{

/// Whether \a line's 金額 goes by its 数量 and 単価. A line of goods that has neither is one of an amount
/// alone.
bool isCounted(const book::SlipLine &line);

/// Where \a line's 金額 is not what its 数量 and 単価 make: a sentence; empty where it is, or nothing tells.
QString amountRemark(const book::SlipLine &line);

/// Where the slip has a tax line that does not fit its other lines at \a taxRate percent: a sentence with
/// what the tax would be; empty where it fits or there is none. \a inclusive: whether its prices include the
/// tax, where that is known.
QString taxRemark(const std::vector<book::SlipLine> &lines, double taxRate, book::TaxClass taxClass,
                  std::optional<bool> inclusive = std::nullopt);

/// What closing a slip of these lines would book on it, yen; 0 where it has a tax line, or where no tax is
/// added to such a slip. Nothing where it cannot be computed.
std::optional<double> taxDue(const std::vector<book::SlipLine> &lines, double taxRate,
                             book::TaxClass taxClass, bool inclusive);

/// Of a slip that was left open: a sentence, with the tax that is \a due.
QString leftOpenRemark(std::optional<double> due);

/// Of a closed slip on which tax is \a due all the same: a sentence; empty where there is none.
QString taxMissingRemark(std::optional<double> due);

/// "りんご 箱　数量 2 個　金額 2,000 円".
QString lineInWords(const book::SlipLine &line);

/// "合計 10,800 円（うち消費税 800 円）".
QString totalRemark(const std::vector<book::SlipLine> &lines);

} // namespace slips

#pragma once

#include "book/printed_slip.h"
#include "book/returned_goods.h"

#include <QString>
#include <QStringList>

#include <vector>

// What makes a delivery note a qualified invoice (適格請求書, 消費税法第57条の4): what was sold at each rate,
// and its tax, rounded once for the note.
namespace slips
{

/// So many rates have room on a note: standard, reduced, and one of an earlier time.
inline constexpr int mostInvoiceRates = 3;

struct InvoiceRate
{
    QString name;      // "10%", "軽減8%"; "10%税込" of prices that include the tax
    double amount = 0; // yen: without the tax, of prices that include it with it
    double tax = 0;
};

/// The rates of \a printed, the standard ones first. The taxes are those that the slip bears: what is charged
/// is what is told. None for a customer taxed on the bill, which is the invoice then, and none for a slip
/// that lacks the tax that is due. Fails as book::taxesByRate().
base::Result<std::vector<InvoiceRate>> invoiceRates(const book::PrintedSlip &printed);

/// What the return document (適格返還請求書) says of the goods that come back on \a printed:
/// "【返還】元の伝票 O12　2026/03/01", and a line for each rate, "　軽減8%対象 -9,260 円". None where nothing
/// comes back or it comes to less than 10,000 yen with tax. Amount and rate are enough
/// (消費税法第57条の4第3項); the one tax of the note stands in its box.
base::Result<QStringList> returnNotices(const book::PrintedSlip &printed,
                                        const std::optional<book::OriginalSlip> &original);

/// What the preview says where \a rates have no room on the paper; empty where they do.
QString roomRemark(const std::vector<InvoiceRate> &rates);

/// The mark of a line at a reduced rate, "※"; where \a slip has several such rates, one of its own for each.
/// Empty for any other line.
QString reducedMark(const book::SlipLine &line, const book::Slip &slip);

/// "※は軽減税率（8%）対象", "※は軽減税率（8%）、◆は軽減税率（1%）対象"; empty where \a slip has no such line.
QString reducedLegend(const book::Slip &slip);

} // namespace slips

#pragma once

#include "book/movements.h"
#include "reports/bills/bill_sums.h"
#include "slips/documents/invoice_rates.h"

namespace reports
{

/// What was sold and returned in \a movements at each rate, and its tax: the standard rates first. The tax is
/// what was booked, and never computed anew; where it is added on the bill and not booked, it is rounded once
/// for each rate. So is the tax that prices include, where the bill is the invoice; else it is that of the
/// notes, each of which was rounded. Carried balances and receipts are no part of it. None where a line has
/// no rate, or an amount that is no number.
std::vector<slips::InvoiceRate> billInvoiceRates(const std::vector<book::Movement> &movements,
                                                 book::TaxClass taxClass, const BillRates &rates,
                                                 const BillSums &sums, const BillOptions &options);

/// The marks of lines at reduced rates, and what they mean.
class ReducedMarks
{
public:
    explicit ReducedMarks(const std::vector<book::Movement> &movements);

    /// "※"; empty for any other line.
    [[nodiscard]] QString of(const book::Movement &movement) const;
    /// "※は軽減税率（8%）対象"; empty where there is no such line.
    [[nodiscard]] QString legend() const;

private:
    book::Slip m_lines;
};

/// The numbers of the slips of sale among \a movements, in their order.
QStringList noteNumbersOf(const std::vector<book::Movement> &movements);

} // namespace reports

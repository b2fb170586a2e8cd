#pragma once

#include "book/slip_reader.h"
#include "book/slip_store.h"
#include "reports/bills/bill_sums.h"

// The tax that a bill adds to a period's sales: a sales slip of its own with tax lines alone, so that every
// list and balance takes it for what it is.
namespace reports
{

/// A stored slip of tax, as it was written.
struct BillTaxSlip
{
    book::SavedHeader header;
    book::Slip written;
};

/// The taxes that \a tax yen are booked as: those of \a sums, one for each rate, where it is what they come
/// to; all of it at their rate where they have one. None where it cannot be told how much of it is of which
/// rate; it is booked in one line then.
std::vector<book::RateTax> billTaxes(double tax, const BillSums &sums);

/// Stores \a slip, a sale, with a tax line for each of \a taxes that is not 0, or without any with one of \a
/// tax yen, in one transaction. Fails as saveHeader() does, and for no tax at all.
base::Result<BillTaxSlip> enterBillTax(db::Connection &connection, const book::NewSlip &slip, double tax,
                                       const std::vector<book::RateTax> &taxes);

/// Deletes exactly the slip that was stored. Fails, and deletes nothing, when another program has changed or
/// deleted it: its key may be another slip's by now.
base::Status cancelBillTax(db::Connection &connection, const BillTaxSlip &slip);

} // namespace reports

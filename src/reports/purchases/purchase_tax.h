#pragma once

#include "book/counterpart_search.h"
#include "book/slip_store.h"
#include "reports/purchases/purchase_list.h"

// The tax that a supplier's bill adds to a period's purchases: a purchase slip of its own with the tax line
// alone, so that every list and balance takes it for what it is.
namespace reports
{

/// Suppliers of the class of tax that the screen is restricted to.
extern const book::CounterpartSearch suppliersTaxedOnBill;
extern const book::CounterpartSearch suppliersTaxedOnDelivery;

/// A stored slip of tax, as it was written.
struct TaxSlip
{
    book::SavedHeader header;
    double tax = 0;
};

/// Stores \a slip, a purchase, with \a tax yen as its one line, in one transaction. Fails as saveHeader()
/// does.
base::Result<TaxSlip> enterPurchaseTax(db::Connection &connection, const book::NewSlip &slip, double tax);

/// Deletes exactly the slip that was stored. Fails, and deletes nothing, when another program has changed or
/// deleted it: its key may be another slip's by now.
base::Status cancelPurchaseTax(db::Connection &connection, const TaxSlip &slip);

/// The date to enter a period's tax under: \a today where that lies in the period, else its last day, so that
/// the tax counts for the period.
QDate taxDate(const book::Period &period, const QDate &today);

} // namespace reports

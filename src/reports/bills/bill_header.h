#pragma once

#include "book/slip_reader.h"
#include "reports/bills/bill.h"
#include "reports/bills/bill_list.h"

#include <QStringList>

// Whom a bill is for, as its first lines say it.
namespace reports
{

/// The number of a bill: its customer's and its last day, "7-20261031". A bill of that day that is printed
/// once more after a correction has it too, and so is known as the next version of the same.
QString billNumber(const Bill &bill);
QString billNumber(const CustomerBill &bill);

/// What a bill for \a bill's customer prints above its statement, line by line in columns of fixed width:
/// postal code, address, names, the last of them with the honorific, code and number, telephone and fax. What
/// the register does not hold is left out.
QStringList billHeaderLines(const Bill &bill);

/// \a customer as the papers of slips address theirs.
book::Slip addresseeOf(const BillCustomer &customer);

} // namespace reports

#pragma once

#include "registers/import/customer_import.h"

// Rows of a table that are customers of the register: what they would change there.
namespace registers
{

/// Makes \a candidate the update of the customer that its key or code stands for, with what it would change;
/// an empty cell changes nothing. A row that stands for no customer stays as it is, one that stands for
/// several is refused, and one under another name waits to be taken by hand.
base::Status matchCandidate(db::Connection &connection, ImportCandidate &candidate, ImportMatch match,
                            const std::vector<masters::Entry> &categories);

/// Stores the changes of \a candidate. Fails when its customer was changed or deleted since it was matched.
/// To be called inside a transaction. \a version: the 版 that the row gets
base::Status updateCustomer(db::Connection &connection, const ImportCandidate &candidate, qint64 version,
                            const QString &today);

/// \a value of the field at place \a field as a person reads it: the names of categories and classes.
QString shownImportValue(int field, const QString &value, const std::vector<masters::Entry> &categories);

/// What \a change of \a candidate makes of the field, as a person reads it.
QString shownAfter(const ImportCandidate &candidate, const ImportChange &change,
                   const std::vector<masters::Entry> &categories);

/// Adds \a remark to what is to be said about \a candidate.
void addRemark(ImportCandidate &candidate, const QString &remark);

} // namespace registers

#pragma once

#include "base/result.h"

#include <QString>

#include <optional>

namespace db
{
class Connection;
class Recordset;
} // namespace db

// The rules of a supplier's row (仕入先). It is the customer's smaller sibling: it has neither category,
// dates nor reading, and nothing in it is required.
namespace registers
{

/// The text that one search finds a supplier by: both names without full-width blanks, the code and the
/// first telephone number, at most 150 characters. There is no reading to put into it.
QString supplierKey(const QString &name1, const QString &name2, const QString &code, const QString &tel1);

/// Every supplier, in the table's own order.
base::Status openEverySupplier(db::Recordset &suppliers);

/// The one supplier \a id; the record set is empty when there is no such supplier.
base::Status openSupplier(db::Recordset &suppliers, qint64 id);

/// Stores a new supplier that has its key and its tax class, as the last and current one of \a suppliers.
/// \return its key
base::Result<qint64> addSupplier(db::Connection &connection, db::Recordset &suppliers);

/// Saves the current supplier, even an empty one, with a new key. After a failure its key is as before, and
/// the edits are still there.
base::Status saveSupplier(db::Recordset &suppliers);

/// Brings what was typed of the current supplier's registration into form: the number, and that one who has a
/// number or a day of registration is registered, unless the clerk said something else.
void settleRegistration(db::Recordset &suppliers);

/// What stands beside the boxes of the current supplier's registration; empty where all is in order.
QString registrationRemark(const db::Recordset &suppliers);

/// What keeps the days of registration that were typed from being saved.
struct RegistrationFault
{
    QString text;
    QString column; // of the day to be mended
};

/// That a day is none, or the last one is before the first; none for days that nobody touched.
std::optional<RegistrationFault> registrationFault(const db::Recordset &suppliers);

/// Whether any supplier has the code of the current one. Unlike a customer's, a supplier's own code counts
/// once it is saved; that is wanted.
base::Result<bool> supplierCodeExists(db::Connection &connection, const db::Recordset &suppliers);

} // namespace registers

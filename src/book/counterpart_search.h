#pragma once

#include "book/slip_kind.h"
#include "db/recordset.h"

#include <optional>

namespace book
{

/// How a slip screen finds the other party.
struct CounterpartSearch
{
    Party party;
    const char16_t *columns;
    const char16_t *condition = u""; // beside the one on the search key; empty: none
};

/// Customers, the one served last first.
extern const CounterpartSearch customerSearch;
/// Suppliers in the order of their keys.
extern const CounterpartSearch supplierSearch;
/// The same with the supplier's code, as payments list them.
extern const CounterpartSearch payeeSearch;

/// The counterparts' table.
QString tableOf(Party party);

/// Fills \a found with the rows whose search key holds what a clerk \a typed.
base::Status searchCounterparts(db::Recordset &found, const CounterpartSearch &search, const QString &typed);

/// The class of tax that the register has for the counterpart \a id; nothing where it has none of that key.
base::Result<std::optional<TaxClass>> taxClassOf(db::Connection &connection, Party party, qint64 id);

/// Fills \a found with the one row \a id; with none, columns kept, for 0.
base::Status openCounterpart(db::Recordset &found, const CounterpartSearch &search, qint64 id);

} // namespace book

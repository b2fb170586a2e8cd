#pragma once

#include "book/slip_kind.h"
#include "db/recordset.h"

namespace book
{

/// How a slip screen finds the other party.
struct CounterpartSearch
{
    Party party;
    const char16_t *byKey;     // statement with the search pattern bound
    const char16_t *byId;      // the same columns of one row
    const char16_t *keyColumn; // 納品先ID, 仕入先ID
};

/// Customers, the one served last first.
extern const CounterpartSearch customerSearch;
/// Suppliers in the order of their keys.
extern const CounterpartSearch supplierSearch;
/// The same with the supplier's code, as payments list them.
extern const CounterpartSearch payeeSearch;

/// Fills \a found with the rows whose search key contains \a text.
base::Status searchCounterparts(db::Recordset &found, const CounterpartSearch &search, const QString &text);

/// Fills \a found with the one row \a id; with none, columns kept, for 0.
base::Status openCounterpart(db::Recordset &found, const CounterpartSearch &search, qint64 id);

} // namespace book

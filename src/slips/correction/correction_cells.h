#pragma once

#include "book/slip_kind.h"
#include "db/recordset.h"

// What may be typed into the cells of stored slips and their lines.
namespace slips
{

/// Lets the screens' grids edit the columns of headers and lines. Typed numbers and dates are read as
/// everywhere; a counterpart is given by its key or by a part of its search key that only one has, an
/// employee by key or name.
void makeHeadersEditable(db::Recordset &headers, db::Connection &connection, const book::SlipKind &kind);
void makeLinesEditable(db::Recordset &lines);

} // namespace slips

#pragma once

#include "book/slip_kind.h"
#include "book/tax_rates.h"
#include "db/recordset.h"

#include <functional>

// What may be typed into the cells of stored slips and their lines.
namespace slips
{

/// Lets the screens' grids edit the columns of headers and lines. Typed numbers and dates are read as
/// everywhere; a counterpart is given by its key or by a part of its search key that only one has, an
/// employee by key or name.
void makeHeadersEditable(db::Recordset &headers, db::Connection &connection, const book::SlipKind &kind);
void makeLinesEditable(db::Recordset &lines);

/// The same for lines whose class of tax can be another one than their slip's: \a rateOf gives the rate of a
/// class on the day of the slip, percent, and stands in the line beside the class that was typed. Nothing
/// where there is none.
using RateOf = std::function<std::optional<double>(book::GoodsTax)>;
void makeTaxedLinesEditable(db::Recordset &lines, const RateOf &rateOf);

/// What the grids and cells call classes of tax: "標準", "軽減", "新聞", "非課税", "対象外".
QStringList shortTaxNames();

} // namespace slips

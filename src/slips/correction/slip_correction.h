#pragma once

#include "book/counterpart_name.h"
#include "book/slip_reader.h"
#include "db/recordset.h"

// Stored slips, corrected: which slips and lines a correction screen works on, what may be typed into their
// cells, and what is to be remarked of them. Nothing is computed anew by itself: a slip says what the clerk
// wrote, and a remark says where its figures disagree.
namespace slips
{

/// Fills \a headers with all slips of \a kind in the order of their keys, to be edited. \a headers writes
/// only what no other program has changed meanwhile.
base::Status openSlips(db::Recordset &headers, const book::SlipKind &kind);

/// As openSlips() for the slips of one counterpart, or of none. Where it has none, \a headers stays as it
/// was. \return whether it has any
base::Result<bool> openSlipsOf(db::Recordset &headers, const book::SlipKind &kind,
                               book::CounterpartKey counterpart);

/// Fills \a lines with those of the slip \a id in the order of entry, with none for 0.
base::Status openLines(db::Recordset &lines, qint64 id);

/// Lets the screens' grids edit the columns of headers and lines. Typed numbers and dates are read as
/// everywhere; a counterpart is given by its key or by a part of its search key that only one has, an
/// employee by key or name.
void makeHeadersEditable(db::Recordset &headers, db::Connection &connection, const book::SlipKind &kind);
void makeLinesEditable(db::Recordset &lines);

/// Saves the edits of the current header and the current line in one transaction. After a failure they are
/// still there. Fails for a slip number that another slip has.
base::Status saveCorrections(db::Recordset &headers, db::Recordset &lines, db::Connection &connection,
                             const book::SlipKind &kind);

/// Deletes the current slip, lines and header.
base::Status deleteCurrentSlip(db::Recordset &headers, db::Connection &connection);

/// Deletes the current line of the current slip.
base::Status deleteCurrentLine(db::Recordset &headers, db::Recordset &lines);

/// Appends an empty line to the slip \a id, to be filled in.
base::Status appendEmptyLine(db::Connection &connection, const book::SlipKind &kind, qint64 id);

/// Whether the lines of \a kind are goods rather than money.
bool holdsGoods(const book::SlipKind &kind);

/// The lines as shown, with what is edited and not saved yet.
std::vector<book::SlipLine> linesIn(const db::Recordset &lines);
/// The one in \a row.
book::SlipLine lineIn(const db::Recordset &lines, int row);

/// Where \a line's 金額 is not what its 数量 and 単価 make: a sentence; empty where it is, or nothing tells.
QString amountRemark(const book::SlipLine &line);

/// Where the slip has a tax line that does not fit its other lines at \a taxRate percent: a sentence with
/// what the tax would be; empty where it fits or there is none.
QString taxRemark(const std::vector<book::SlipLine> &lines, double taxRate, book::TaxClass taxClass);

/// Whether the slip was left without being closed. Nobody knows it of slips that older programs entered.
bool isLeftOpen(const db::Recordset &headers);

/// Where the current slip was left open: a sentence, with the tax that was not booked on it. \a taxClass is
/// its counterpart's.
QString leftOpenRemark(const db::Recordset &headers, const std::vector<book::SlipLine> &lines,
                       const book::SlipKind &kind, book::TaxClass taxClass);

/// Closes the slip that was left open, as its own screen would have done.
base::Status closeLeftOpen(db::Connection &connection, const db::Recordset &headers,
                           const book::SlipKind &kind, book::TaxClass taxClass);

/// "合計 10,800 円（うち消費税 800 円）".
QString totalRemark(const std::vector<book::SlipLine> &lines);

} // namespace slips

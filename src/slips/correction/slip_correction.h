#pragma once

#include "book/counterpart_name.h"
#include "book/slip_reader.h"
#include "db/recordset.h"

// Stored slips, corrected: which slips and lines a correction screen works on, and how they are changed.
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

/// Whether the current header may bear the number that was typed into it; the error is the sentence to tell.
base::Status checkNumber(const db::Recordset &headers, db::Connection &connection,
                         const book::SlipKind &kind);

/// Whether the current header, and the current line where it is edited, are in the file as they were read.
base::Status checkAsRead(const db::Recordset &headers, const db::Recordset &lines);

/// Saves the edits of the current header and the current line in one transaction, after \a check. After a
/// failure they are still there. Fails for a slip number that another slip has.
base::Status saveCorrections(db::Recordset &headers, db::Recordset &lines, db::Connection &connection,
                             const book::SlipKind &kind, const db::Recordset::Step &check = {});

/// Saves the edits of the current line alone, after \a check in the same transaction; those of its header
/// stay edits.
base::Status saveLine(db::Recordset &lines, const db::Recordset::Step &check);

/// Deletes the current slip, lines and header.
base::Status deleteCurrentSlip(db::Recordset &headers, db::Connection &connection);

/// Deletes the current line of the current slip.
base::Status deleteCurrentLine(db::Recordset &headers, db::Recordset &lines);

/// Shows an empty line of the slip \a id among \a lines, to be filled in before it is stored.
base::Status beginLine(db::Recordset &lines, const book::SlipKind &kind, qint64 id);

/// Whether the lines of \a kind are goods rather than money.
bool holdsGoods(const book::SlipKind &kind);
/// Whether closing a slip of \a kind books a tax line where one is due.
bool isTaxed(const book::SlipKind &kind);

/// The lines as shown, with what is edited and not saved yet.
std::vector<book::SlipLine> linesIn(const db::Recordset &lines);
/// The one in \a row.
book::SlipLine lineIn(const db::Recordset &lines, int row);

/// Whether the slip was left without being closed. Nobody knows it of slips that older programs entered.
bool isLeftOpen(const db::Recordset &headers);
/// Whether it was closed. Nobody knows that of them either.
bool isClosed(const db::Recordset &headers);

/// Whether the prices of the current slip include the tax; empty where nobody knows.
std::optional<bool> inclusiveIn(const db::Recordset &headers);
/// The same; where nobody knows, as the entry screens begin a slip of a counterpart of \a taxClass.
bool includesTax(const db::Recordset &headers, book::TaxClass taxClass);

/// Closes the slip that was left open, or whose tax line is missing, as its own screen would have done, after
/// \a check in the same transaction: the tax goes by what is shown, which must be what the file says.
base::Status closeLeftOpen(db::Connection &connection, const db::Recordset &headers,
                           const book::SlipKind &kind, book::TaxClass taxClass,
                           const db::Recordset::Step &check);

} // namespace slips

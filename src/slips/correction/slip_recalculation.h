#pragma once

#include "book/slip_reader.h"
#include "db/recordset.h"

// Amounts and tax of a stored slip, computed anew where the clerk says so.
namespace slips
{

/// A line with the key under which the record set of the lines has it; 0: it is in neither yet.
struct KeyedLine
{
    qint64 key = 0;
    book::SlipLine line;

    bool operator==(const KeyedLine &) const = default;
};

/// What a slip's tax goes by besides its lines.
struct TaxTerms
{
    double rate = 0;                                      // percent, of lines without one of their own
    book::TaxClass taxClass = book::TaxClass::OnDelivery; // of the counterpart
    std::optional<bool> inclusive;                        // prices include the tax; empty: nobody knows
    bool isClosed = false;                                // so that a tax line that is not there is missing

    bool operator==(const TaxTerms &) const = default;
};

/// What is asked about and computed anew of a slip.
struct Figures
{
    std::vector<KeyedLine> lines;
    std::optional<TaxTerms> terms; // empty: no tax is kept on it, or nobody knows its counterpart

    bool operator==(const Figures &) const = default;
};

/// What of a slip is to be computed anew.
struct Recalculation
{
    std::optional<qint64> line;  // the 金額 of this one alone, of none for 0; empty: of every line
    std::optional<TaxTerms> tax; // the tax lines too, by these; empty: they stay
};

/// Those shown, with what is edited and not saved yet.
std::vector<KeyedLine> keyedLinesIn(const db::Recordset &lines);
/// Those of the slip \a id as the file has them, with the edits of the current line of \a lines.
base::Result<std::vector<KeyedLine>> linesInFile(db::Connection &connection, const db::Recordset &lines,
                                                 qint64 id);
/// Whether the slip has a line of tax.
bool hasTaxLine(const std::vector<KeyedLine> &lines);
/// Without their keys.
std::vector<book::SlipLine> withoutKeys(const std::vector<KeyedLine> &lines);

/// \a lines as they are to be. A slip of tax alone, which holds that of a whole period, keeps its tax; one
/// that was left open gets its tax line when it is closed.
base::Result<std::vector<KeyedLine>> recalculated(std::vector<KeyedLine> lines, const Recalculation &what);

/// Saves the edits of the current line alone with the 金額 that they make, after \a check in the same
/// transaction; those of its header stay edits. After a failure the edits are as they were.
base::Status saveLineRecalculated(db::Recordset &lines, const db::Recordset::Step &check);

/// Saves the edits of the current header and the current line, and with them all that \a what makes of the
/// lines as the file has them, in one transaction, after \a check. After a failure the edits are as they
/// were; else the record set of the lines is to be read anew.
base::Status saveRecalculated(db::Recordset &headers, db::Recordset &lines, db::Connection &connection,
                              const book::SlipKind &kind, const Recalculation &what,
                              const db::Recordset::Step &check);

} // namespace slips

#pragma once

#include "printing/list_sheet.h"
#include "slips/ledger_table.h"

namespace slips
{

/// \a table as it is printed on \a today, on A4: upright with few columns, else lying.
printing::List printedList(const LedgerTable &table, const QDate &today);

/// Whether \a table can be written as \a fileName; see tables::checkTarget().
db::Status checkLedgerExport(const LedgerTable &table, const QString &fileName);

/// Writes \a table with its row of totals as \a fileName; see tables::writeTable().
db::Status exportLedger(const LedgerTable &table, const QString &fileName, const db::Progress &progress);

} // namespace slips

#pragma once

#include "printing/list_sheet.h"
#include "reports/ledgers/ledger_table.h"

namespace reports
{

/// \a table as it is printed on \a today, on A4: upright with few columns, else lying.
printing::List printedList(const LedgerTable &table, const QDate &today);

/// What a file of \a table is called: "売掛金元帳 山田商店 2026-04-01～2026-04-30".
QString fileTitle(const LedgerTable &table);

/// Whether \a table can be written as \a fileName; see tables::checkTarget().
base::Status checkLedgerExport(const LedgerTable &table, const QString &fileName);

/// Writes \a table with its row of totals as \a fileName; see tables::writeTable().
base::Status exportLedger(const LedgerTable &table, const QString &fileName, const base::Progress &progress);

} // namespace reports

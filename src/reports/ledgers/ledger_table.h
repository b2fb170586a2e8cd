#pragma once

#include "base/column.h"
#include "reports/ledgers/ledger.h"
#include "reports/ledgers/stock_ledger.h"

#include <QVariant>

#include <variant>

// Ledgers and lists as tables: what a screen shows, a printer prints and a spreadsheet gets.
namespace reports
{

/// A slip, to be corrected.
struct SlipTarget
{
    qint64 slip = 0;
    book::SlipKind kind = book::sale;

    bool operator==(const SlipTarget &) const = default;
};

/// Whose ledger.
struct LedgerTarget
{
    book::CounterpartKey counterpart;

    bool operator==(const LedgerTarget &) const = default;
};

/// What a row leads to; some lead nowhere.
using RowTarget = std::variant<std::monostate, SlipTarget, LedgerTarget>;

struct NamedSum
{
    QString name;
    double yen = 0;
};

struct LedgerTable
{
    QString title;
    QString remark; // whose ledger it is, and of which days
    std::vector<base::Column> columns;
    std::vector<QVariantList> rows; // values as they are stored; dates yyyy-MM-dd
    std::vector<RowTarget> targets; // one for each row
    QVariantList totals;            // a row under the others; empty when there is none
    std::vector<NamedSum> sums;
};

/// The rows of a ledger begin with the balance brought into the period.
LedgerTable ledgerTable(const Ledger &ledger, book::Party party, const QString &name,
                        const book::Period &period);

/// \a onlyOpen: without those whose balance is nothing.
LedgerTable balanceTable(const std::vector<CounterpartBalance> &balances, book::Party party, const QDate &day,
                         bool onlyOpen);

/// A last row tells how many lines have no date, and leads to the first of them.
LedgerTable stocktakeTable(const StocktakeReport &report, const book::Period &period);

/// \a onlyInStock: without goods of which nothing is left.
LedgerTable stockTable(const StockLedger &stock, const QDate &day, bool onlyInStock);

} // namespace reports

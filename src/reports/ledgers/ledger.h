#pragma once

#include "base/progress.h"
#include "book/counterpart_name.h"
#include "book/period.h"
#include "book/slip_kind.h"
#include "db/connection.h"

#include <optional>

// What the slips of a counterpart come to: its ledger, and the balances of all of them. Amounts are yen,
// exact to four decimals. Which slips enter a balance, and which way, the first letter of their numbers
// decides.
namespace reports
{

/// Three kinds of slips make a balance.
enum class Movement {
    Carried, // taken over from earlier books
    Charged, // goods sold or bought: raises the balance
    Settled, // money received or paid: lowers it
};

/// One line of a slip in a ledger.
struct LedgerLine
{
    qint64 slip = 0;
    book::SlipKind kind = book::sale;
    Movement movement = Movement::Charged;
    QString date; // yyyy-MM-dd
    QString number;
    QString product; // of money, what it is for
    QString specification;
    std::optional<double> quantity;
    QString unit;
    std::optional<double> price;
    double amount = 0;
    double balance = 0; // after the line
};

/// carried + charged − settled = balance.
struct LedgerTotals
{
    double carried = 0;  // brought into the period, and carry-forward slips within it
    double charged = 0;  // tax included
    double tax = 0;      // what tax lines make of that
    double included = 0; // the tax in the prices of the slips that include it, whole yen a slip
    double settled = 0;
    double balance = 0;
};

struct Ledger
{
    double brought = 0; // the balance before the period
    std::vector<LedgerLine> lines;
    LedgerTotals totals;
};

/// The ledger of \a counterpart, a customer or a supplier, which may have been deleted: its lines in the
/// order of date, slip and entry. A slip without a date, or with one that is none, counts as one before every
/// period. Without a key, the ledger of the slips that have no counterpart. An amount that is no number makes
/// the sums it belongs to none.
base::Result<Ledger> readLedger(db::Connection &connection, book::Party party,
                                book::CounterpartKey counterpart, const book::Period &period);

struct CounterpartBalance
{
    book::CounterpartKey counterpart; // none: all slips that have no counterpart
    bool unknown = false;             // to the register
    QString code;
    QString name; // in one line; of an unknown counterpart what it is called by
    double balance = 0;
    QString lastCharged; // yyyy-MM-dd; empty without one
    QString lastSettled;
};

/// The balances of all counterparts that have slips up to the end of \a day: customers in the order of their
/// readings, suppliers in that of their codes, deleted ones last, and after them the slips that have no
/// counterpart. The whole book at one moment.
base::Result<std::vector<CounterpartBalance>> balanceList(db::Connection &connection, book::Party party,
                                                          const QDate &day, const base::Progress &progress);

} // namespace reports

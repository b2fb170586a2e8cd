#pragma once

#include "reports/ledgers/ledger.h"
#include "reports/purchases/purchase_deduction.h"

#include <optional>
#include <vector>

// What was bought from the suppliers in a period and paid to them, from the slips of purchase, payment and
// carried balance. Amounts are yen, exact to four decimals.
namespace reports
{

/// The sums that the monthly list keeps, and what follows from them.
struct PurchaseSums
{
    double previous = 0;  // brought into the period, and carry-forward slips within it
    double purchases = 0; // tax included
    double tax = 0;       // what tax lines make of that
    double payments = 0;
    /// Tax of a supplier who adds it to the bill, while the tax lines of the period come to nothing: that on
    /// the purchases of each rate the slips were saved with, truncated to whole yen. Nothing where it cannot
    /// be computed from what the slips hold.
    std::optional<double> unbooked = 0.0;

    [[nodiscard]] double balance() const;
    [[nodiscard]] double carried() const; // 繰越金額
    [[nodiscard]] double untaxed() const; // purchases without the tax

    /// All of the sums are nothing.
    [[nodiscard]] bool isEmpty() const;
    void add(const PurchaseSums &other);
};

struct SupplierPurchases
{
    book::CounterpartKey supplier; // none: slips that name nobody
    bool unknown = false;          // deleted, or nobody, while slips refer to it
    QString code;
    QString name1; // of an unknown one what it is called by
    QString name2;
    bool isTaxBooked = false; // in the period: its tax lines come to something
    PurchaseSums sums;
    /// Of purchases on days on which the supplier was not registered; nothing where there are none. Told in
    /// the list of all suppliers alone.
    std::optional<PurchaseDeduction> deduction;

    [[nodiscard]] QString name() const; // in one line
};

struct PurchaseList
{
    std::vector<SupplierPurchases> suppliers;
    PurchaseSums totals;
    std::optional<PurchaseDeduction> deduction; // of all of them; nothing where none has any
};

/// The purchases of all suppliers in the order of their codes, then of deleted ones that slips within or
/// before the period refer to, and of slips that name nobody. \a withIdle: those whose sums are all nothing,
/// too. A slip without a date counts as one before every period. Fails for a period that ends before it
/// begins.
base::Result<PurchaseList> purchaseList(db::Connection &connection, const book::Period &period, bool withIdle,
                                        const base::Progress &progress);

/// The same of one supplier, with sums of nothing where it has no slips.
base::Result<SupplierPurchases> purchasesOf(db::Connection &connection, qint64 supplier,
                                            const book::Period &period);

} // namespace reports

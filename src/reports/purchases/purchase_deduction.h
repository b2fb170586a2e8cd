#pragma once

#include "book/movement_sums.h"
#include "book/period.h"
#include "book/supplier_registration.h"

#include <optional>
#include <set>

// What may be deducted of the tax of purchases from suppliers who issue no qualified invoice.
namespace reports
{

struct PurchaseDeduction
{
    std::set<int> percents;          // the shares of the tax that may be, by the days of the purchases
    std::optional<double> tax = 0.0; // yen; nothing where it cannot be computed from what the slips hold

    void add(const PurchaseDeduction &other);
    /// "80%・70%"
    [[nodiscard]] QString shares() const;
};

/// That of the purchases of \a period from the supplier \a id on days without a registration; nothing where
/// there are none, or all of the tax may be deducted. It is truncated once for each rate and share. \a
/// taxedOnBill: the supplier adds the tax to its bill: the goods tell it, on the days they were bought.
base::Result<std::optional<PurchaseDeduction>> deductionOf(db::Connection &connection, qint64 id,
                                                           const book::Period &period,
                                                           const book::SupplierRegistration &registration,
                                                           bool taxedOnBill);

} // namespace reports

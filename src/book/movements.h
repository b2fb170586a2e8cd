#pragma once

#include "base/progress.h"
#include "book/slip_selection.h"
#include "book/tax_rates.h"
#include "db/connection.h"

#include <functional>

// The lines of slips: what ledgers, lists, stock and bills are made of. Sums over them stand in
// movement_sums.h.
namespace book
{

/// A line of a slip, with what its slip says of it.
struct Movement
{
    SlipKind kind = sale;
    qint64 slip = 0; // ID
    QString number;
    QString date; // yyyy-MM-dd; empty where the slip has none that is a day
    CounterpartKey counterpart;

    qint64 line = 0; // its key: lines of a slip count up in the order of entry
    QString product; // of money, what it is for
    QString specification;
    std::optional<double> quantity;
    QString unit;
    std::optional<double> price;
    double amount = 0; // yen, as written: positive for money that comes in and for money that goes out

    /// Its amount in the balance of the counterpart: what is settled lowers it, estimates and stocktakes are
    /// nothing to it.
    [[nodiscard]] double inBalance() const { return kind.sign * amount; }
    /// Whether it is a slip's tax.
    [[nodiscard]] bool isTax() const { return product == QStringView(taxLineName); }

    std::optional<GoodsTax> taxClass; // 税区分 of the line; empty: the slip's own
    std::optional<double>
        taxRate; // percent, of the line, else of its slip; a book from elsewhere may have neither
    std::optional<bool> inclusive; // whether prices include the tax; empty: not known
};

/// The lines of \a selection, the oldest slip first, slips of a day in the order of their keys, lines in that
/// of entry. For one counterpart, one kind of goods or a period: a whole book does not fit into memory.
/// Quantities, prices and amounts that are no numbers are not a number.
base::Result<std::vector<Movement>> movements(db::Connection &connection, const Selection &selection);

/// Shows \a visit every line of \a selection, in no particular order and a few thousand slips at a time, so
/// that reading a large book can be watched and stopped; \a visit leaves the connection alone. Of each it has
/// what stocks are made of: kind, slip, date, line, goods, quantity and price; the rest stays empty.
base::Status visitGoodsMovements(db::Connection &connection, const Selection &selection,
                                 const base::Progress &progress,
                                 const std::function<void(const Movement &)> &visit);

} // namespace book

#pragma once

#include "base/report.h"
#include "reports/ledgers/goods_ledger.h"
#include "reports/ledgers/ledger.h"
#include "reports/ledgers/stock_ledger.h"

// Ledgers and lists as reports. The links of their rows are the targets below.
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

/// Whose stock.
struct GoodsTarget
{
    book::Goods goods;

    bool operator==(const GoodsTarget &) const = default;
};

/// The rows of a ledger begin with the balance brought into the period.
base::Report ledgerReport(const Ledger &ledger, book::Party party, const QString &name,
                          const book::Period &period);

/// \a onlyOpen: without those whose balance is nothing.
base::Report balanceReport(const std::vector<CounterpartBalance> &balances, book::Party party,
                           const QDate &day, bool onlyOpen);

/// \a onlyInStock: without goods of which nothing is left.
base::Report stockReport(const StockLedger &stock, const QDate &day, bool onlyInStock);

/// What lists call \a goods: product, specification and unit.
QString nameOf(const book::Goods &goods);

/// The rows begin with the stock brought into the period.
base::Report goodsReport(const GoodsLedger &ledger, const book::Goods &goods, const book::Period &period);

} // namespace reports

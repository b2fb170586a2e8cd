#include "reports/ledgers/ledger_view.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

base::Result<LedgerTable> ledgerOf(db::Connection &connection, book::Party party, const LedgerQuery &query)
{
    if (!query.whose)
        return base::Error{party == book::Party::Customer ? u"納品先が選択されていません。"_s
                                                          : u"仕入先が選択されていません。"_s};
    const auto name = book::nameOfCounterpart(connection, party, query.whose->counterpart);
    if (!name)
        return name.error();
    const auto ledger = readLedger(connection, party, query.whose->counterpart, query.period);
    if (!ledger)
        return ledger.error();
    return ledgerTable(*ledger, party, *name, query.period);
}

base::Result<LedgerTable> balancesOf(db::Connection &connection, book::Party party, const LedgerQuery &query,
                                     const base::Progress &progress)
{
    const auto balances = balanceList(connection, party, query.period.to, progress);
    if (!balances)
        return balances.error();
    return balanceTable(*balances, party, query.period.to, query.leavesOutZeros);
}

base::Result<LedgerTable> stocktakesOf(db::Connection &connection, const LedgerQuery &query)
{
    const auto report = readStocktakes(connection, query.period);
    return report ? base::Result<LedgerTable>(stocktakeTable(*report, query.period)) : report.error();
}

base::Result<LedgerTable> stockOf(db::Connection &connection, const LedgerQuery &query,
                                  const base::Progress &progress)
{
    const auto stock = readStock(connection, query.period.to, progress);
    return stock ? base::Result<LedgerTable>(stockTable(*stock, query.period.to, query.leavesOutZeros))
                 : stock.error();
}

} // namespace

std::vector<base::Column> columnsOf(LedgerView view)
{
    switch (view) {
    case LedgerView::Receivable:
        return ledgerTable({}, book::Party::Customer, {}, {}).columns;
    case LedgerView::Payable:
        return ledgerTable({}, book::Party::Supplier, {}, {}).columns;
    case LedgerView::ReceivableBalances:
        return balanceTable({}, book::Party::Customer, {}, false).columns;
    case LedgerView::PayableBalances:
        return balanceTable({}, book::Party::Supplier, {}, false).columns;
    case LedgerView::Stocktakes:
        return stocktakeTable({}, {}).columns;
    case LedgerView::Stock:
        return stockTable({}, {}, false).columns;
    }
    Q_UNREACHABLE();
}

base::Result<LedgerTable> readView(db::Connection &connection, LedgerView view, const LedgerQuery &query,
                                   const base::Progress &progress)
{
    if (query.period.from > query.period.to)
        return base::Error{u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s};
    switch (view) {
    case LedgerView::Receivable:
        return ledgerOf(connection, book::Party::Customer, query);
    case LedgerView::Payable:
        return ledgerOf(connection, book::Party::Supplier, query);
    case LedgerView::ReceivableBalances:
        return balancesOf(connection, book::Party::Customer, query, progress);
    case LedgerView::PayableBalances:
        return balancesOf(connection, book::Party::Supplier, query, progress);
    case LedgerView::Stocktakes:
        return stocktakesOf(connection, query);
    case LedgerView::Stock:
        return stockOf(connection, query, progress);
    }
    Q_UNREACHABLE();
}

} // namespace reports

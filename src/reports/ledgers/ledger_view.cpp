#include "reports/ledgers/ledger_view.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

base::Result<base::Report> ledgerOf(db::Connection &connection, book::Party party, const LedgerQuery &query)
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
    return ledgerReport(*ledger, party, *name, query.period);
}

base::Result<base::Report> balancesOf(db::Connection &connection, book::Party party, const LedgerQuery &query,
                                      const base::Progress &progress)
{
    const auto balances = balanceList(connection, party, query.period.to, progress);
    if (!balances)
        return balances.error();
    return balanceReport(*balances, party, query.period.to, query.leavesOutZeros);
}

base::Result<base::Report> stockOf(db::Connection &connection, const LedgerQuery &query,
                                   const base::Progress &progress)
{
    const auto stock = readStock(connection, query.period.to, progress);
    return stock ? base::Result<base::Report>(stockReport(*stock, query.period.to, query.leavesOutZeros))
                 : stock.error();
}

base::Result<base::Report> goodsOf(db::Connection &connection, const LedgerQuery &query)
{
    const auto ledger = readGoodsLedger(connection, query.goods, query.period);
    return ledger ? base::Result<base::Report>(goodsReport(*ledger, query.goods, query.period))
                  : ledger.error();
}

} // namespace

std::vector<base::Column> columnsOf(LedgerView view)
{
    switch (view) {
    case LedgerView::Receivable:
        return ledgerReport({}, book::Party::Customer, {}, {}).columns;
    case LedgerView::Payable:
        return ledgerReport({}, book::Party::Supplier, {}, {}).columns;
    case LedgerView::ReceivableBalances:
        return balanceReport({}, book::Party::Customer, {}, false).columns;
    case LedgerView::PayableBalances:
        return balanceReport({}, book::Party::Supplier, {}, false).columns;
    case LedgerView::Stock:
        return stockReport({}, {}, false).columns;
    case LedgerView::Goods:
        return goodsReport({}, {}, {}).columns;
    }
    Q_UNREACHABLE();
}

base::Result<base::Report> readView(db::Connection &connection, LedgerView view, const LedgerQuery &query,
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
    case LedgerView::Stock:
        return stockOf(connection, query, progress);
    case LedgerView::Goods:
        return goodsOf(connection, query);
    }
    Q_UNREACHABLE();
}

} // namespace reports

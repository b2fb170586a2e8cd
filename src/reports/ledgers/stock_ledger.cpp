#include "reports/ledgers/stock_ledger.h"

#include "base/exact_sum.h"
#include "book/movement_sums.h"
#include "book/movements.h"
#include "book/tax.h"
#include "db/transaction.h"
#include "text/japanese_order.h"

#include <algorithm>
#include <limits>
#include <map>
#include <tuple>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

// The price of a line, with what tells which of two lines is the later one.
struct Price
{
    QString date;
    qint64 slip = 0;
    qint64 line = 0;
    std::optional<double> yen;

    void take(const book::Movement &movement)
    {
        const double given = movement.price.value_or(0);
        if (!(given <= 0) && std::tie(date, slip, line) <= std::tie(movement.date, movement.slip,
                                                                    movement.line)) // also what is no number
            *this = {movement.date, movement.slip, movement.line, given};
    }
};

struct Account
{
    QString counted;
    base::ExactSum stocktake;
    base::ExactSum in;
    base::ExactSum out;
    Price purchasePrice;
    Price stocktakePrice;
};

using Accounts = std::unordered_map<book::Goods, Account>;

Account &accountOf(Accounts &accounts, const book::Movement &movement)
{
    return accounts[{movement.product, movement.specification, movement.unit}];
}

base::Status readCounts(db::Connection &connection, const QDate &day, Accounts &accounts)
{
    const auto counts = book::movements(
        connection,
        {.kinds = {book::stocktake}, .days = book::Days::upTo(day), .lines = book::LinesOf::Goods});
    if (!counts)
        return counts.error();
    for (const book::Movement &count : *counts) {
        Account &account = accountOf(accounts, count);
        if (account.counted != count.date)
            account.stocktake = {};
        account.counted = count.date;
        account.stocktake.add(count.quantity.value_or(0));
        account.stocktakePrice.take(count);
    }
    return {};
}

void addMovement(Accounts &accounts, const book::Movement &movement)
{
    Account &account = accountOf(accounts, movement);
    const bool purchased = movement.kind == book::purchase;
    if (movement.date > account.counted || account.counted.isEmpty())
        (purchased ? account.in : account.out).add(movement.quantity.value_or(0));
    if (purchased)
        account.purchasePrice.take(movement);
}

StockLine lineOf(const book::Goods &goods, const Account &account)
{
    StockLine line;
    line.product = goods.product;
    line.specification = goods.specification;
    line.unit = goods.unit;
    line.counted = account.counted;
    line.stocktake = account.stocktake.value();
    line.in = account.in.value();
    line.out = account.out.value();
    base::ExactSum stock = account.stocktake;
    stock.add(line.in);
    stock.add(-line.out);
    line.stock = stock.value();
    line.price = account.purchasePrice.yen ? account.purchasePrice.yen : account.stocktakePrice.yen;
    const auto amount = book::lineAmount(line.stock, line.price.value_or(0));
    line.amount = amount ? *amount : std::numeric_limits<double>::quiet_NaN();
    return line;
}

bool standsBefore(const StockLine &one, const StockLine &other)
{
    if (one.product != other.product)
        return text::comesBefore(one.product, other.product);
    if (one.specification != other.specification)
        return text::comesBefore(one.specification, other.specification);
    return text::comesBefore(one.unit, other.unit);
}

} // namespace

base::Result<StockLedger> readStock(db::Connection &connection, const QDate &day,
                                    const base::Progress &progress)
{
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    Accounts accounts;
    if (const base::Status counted = readCounts(connection, day, accounts); !counted)
        return counted.error();
    const base::Status moved = book::visitGoodsMovements(
        connection,
        {.kinds = {book::purchase, book::sale}, .days = book::Days::upTo(day), .lines = book::LinesOf::Goods},
        progress, [&accounts](const book::Movement &movement) { addMovement(accounts, movement); });
    if (!moved)
        return moved.error();

    StockLedger ledger;
    base::ExactSum total;
    for (const auto &[goods, account] : accounts) {
        ledger.lines.push_back(lineOf(goods, account));
        total.add(ledger.lines.back().amount);
    }
    ledger.total = total.value();
    std::ranges::sort(ledger.lines, standsBefore);
    return ledger;
}

} // namespace reports

#include "ledger_operations.h"

#include "bare.h"

#include "reports/ledgers/ledger.h"
#include "reports/ledgers/stock_ledger.h"
#include "reports/purchases/purchase_list.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

// The last year of the shops: most of a customer's lines come before it, and are added up.
const book::Period lastYear{{2025, 4, 1}, {2026, 3, 31}};
const book::Period lastMonth{{2026, 3, 1}, {2026, 3, 31}};

// One customer after the other, so that no run finds the pages of the last one warm.
template <class Work>
void addForEachCustomer(std::size_t row, const char *whose, int customers, Work work)
{
    add(row, whose, [customers, work, customer = qint64(0)]() mutable {
        customer = customer % customers + 1;
        return secondsOf([&] { work(customer); });
    });
}

// Each customer has ten slips in either shop: the second one shows what the others' slips cost.
void registerLedger(const Shops &shops, std::vector<Row> &rows, int customers, int slipCount)
{
    rows.push_back({"a customer's ledger read",
                    QLocale(QLocale::English).toString(slipCount).toStdString() + " slips", 1.5});
    const QString file = shops.shop(customers, slipCount);
    auto shop = std::make_shared<OpenShop>(file);
    auto bare = std::make_shared<Bare>(file);
    addForEachCustomer(rows.size() - 1, "ours", customers, [shop](qint64 customer) {
        if (!reports::readLedger(shop->connection, book::Party::Customer, customer, lastYear))
            qFatal("the ledger was not read");
    });
    addForEachCustomer(rows.size() - 1, "bare", customers,
                       [bare](qint64 customer) { bare->ledger(customer, "2025-04-01", "2026-03-31"); });
}

} // namespace

void registerLedgers(const Shops &shops, std::vector<Row> &rows)
{
    registerLedger(shops, rows, 1000, 10000);
    registerLedger(shops, rows, 100000, 1000000);

    rows.push_back({"balances of all customers listed", "1,000,000 slips", 0});
    const QString file = shops.shop(100000, 1000000);
    auto shop = std::make_shared<OpenShop>(file);
    auto bare = std::make_shared<Bare>(file);
    add(rows.size() - 1, "ours", [shop] {
        return secondsOf([&] {
            (void)reports::balanceList(shop->connection, book::Party::Customer, lastYear.to, base::unwatched);
        });
    });
    add(rows.size() - 1, "bare", [bare] { return secondsOf([&] { bare->balances(); }); });

    rows.push_back({"monthly purchase list", "1,000,000 slips", 0});
    add(rows.size() - 1, "ours", [shop] {
        return secondsOf([&] {
            if (!reports::purchaseList(shop->connection, lastMonth, false, base::unwatched))
                qFatal("the purchase list was not read");
        });
    });
    add(rows.size() - 1, "bare",
        [bare] { return secondsOf([&] { bare->purchases("2026-03-01", "2026-03-31"); }); });

    rows.push_back({"stock of all goods", "1,000,000 slips", 0});
    add(rows.size() - 1, "ours", [shop] {
        return secondsOf([&] {
            if (!reports::readStock(shop->connection, lastYear.to, base::unwatched))
                qFatal("the stock was not read");
        });
    });
}

} // namespace bench

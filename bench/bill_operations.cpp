#include "bill_operations.h"

#include "bare.h"

#include "reports/bills/bill.h"
#include "reports/bills/bill_list.h"

namespace bench
{

namespace
{

constexpr int customers = 100000;
constexpr int closingDay = 20; // some 3,000 customers have it
const book::Period lastMonth{{2026, 2, 21}, {2026, 3, 20}};
const reports::BillOptions byHand{10.0};

} // namespace

void registerBills(const Shops &shops, std::vector<Row> &rows)
{
    const QString file = shops.shop(customers, 1000000);
    auto shop = std::make_shared<OpenShop>(file);
    auto bare = std::make_shared<Bare>(file);
    // One customer after the other, so that no run finds the pages of the last one warm.
    const auto eachCustomer = [](auto work) {
        return [work, customer = qint64(0)]() mutable {
            customer = customer % customers + 1;
            return secondsOf([&] { work(customer); });
        };
    };
    rows.push_back({"a customer's bill", "1,000,000 slips", 1.5});
    add(rows.size() - 1, "ours", eachCustomer([shop](qint64 customer) {
            if (!reports::billOf(shop->connection, customer, lastMonth, byHand))
                qFatal("the bill was not computed");
        }));
    add(rows.size() - 1, "bare",
        eachCustomer([bare](qint64 customer) { bare->bill(customer, "2026-02-21", "2026-03-20"); }));

    rows.push_back({"bills of a closing day, 3,000", "1,000,000 slips", 3});
    add(rows.size() - 1, "ours", [shop] {
        return secondsOf([&] {
            const auto bills =
                reports::billsOf(shop->connection, {lastMonth, closingDay}, byHand, base::unwatched);
            if (!bills || bills->size() < 2500)
                qFatal("the bills were not computed");
        });
    });
    add(rows.size() - 1, "bare",
        [bare] { return secondsOf([&] { bare->bills(closingDay, "2026-02-21", "2026-03-20"); }); });
}

} // namespace bench

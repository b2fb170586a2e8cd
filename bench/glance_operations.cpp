#include "glance_operations.h"

#include "registers/glance/customer_glance.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

// A key may come while a piece is being read: it is shown as late as that. Milliseconds.
constexpr double mostForAKey = 100;
constexpr qint64 customer = 7;

/// A shop that sells nearly all to one customer: as good as all slips of \a shops' large one are its own.
std::shared_ptr<OpenShop> shopOfOneCustomer(const Shops &shops)
{
    auto shop = std::make_shared<OpenShop>(shops.copy(100000, 1000000, u"one-customer"_s));
    if (!shop->connection.execute(u"UPDATE 入出庫マスター SET 相手先ID = ? WHERE 種別 IN ('O', 'R')"_s,
                                  {customer}))
        qFatal("the slips were not given to one customer");
    return shop;
}

struct Reading
{
    double longest = 0, whole = 0; // seconds
};

Reading readGlance(OpenShop &shop)
{
    Reading reading;
    registers::GlanceReader reader(shop.connection, customer);
    while (!reader.isComplete()) {
        const double seconds = secondsOf([&] {
            if (!reader.readOn())
                qFatal("the glance was not read");
        });
        reading.longest = std::max(reading.longest, seconds);
        reading.whole += seconds;
    }
    return reading;
}

} // namespace

void registerGlance(const Shops &shops, std::vector<Row> &rows)
{
    const auto made = std::make_shared<std::shared_ptr<OpenShop>>();
    const struct
    {
        const char *what;
        double Reading::*seconds;
        double most;
    } measured[] = {{"customer at a glance, longest wait of a key", &Reading::longest, mostForAKey},
                    {"customer at a glance, until all stands there", &Reading::whole, 0}};
    for (const auto &each : measured) {
        rows.push_back({each.what, "a customer of 792,000 slips", 0, each.most});
        add(rows.size() - 1, "ours", [&shops, made, seconds = each.seconds] {
            if (!*made)
                *made = shopOfOneCustomer(shops);
            return readGlance(**made).*seconds;
        });
    }
}

} // namespace bench

#include "book/discount.h"

#include "book/tax.h"
#include "book/tax_terms.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

struct Share
{
    LineTax tax;
    double sold = 0; // yen
};

// What was sold at each rate, the everyday goods last: the rest of a division is theirs.
std::vector<Share> sharesIn(const std::vector<TaxableAmount> &goods)
{
    std::vector<Share> shares;
    for (const TaxableAmount &amount : goods) {
        const LineTax tax{amount.taxClass, amount.rate};
        const auto known = std::ranges::find(shares, tax, &Share::tax);
        if (known == shares.end())
            shares.push_back({tax, amount.amount});
        else
            known->sold += amount.amount;
    }
    std::erase_if(shares, [](const Share &share) { return share.sold <= 0; });
    std::ranges::stable_partition(
        shares, [](const Share &share) { return share.tax.taxClass != GoodsTax::Standard; });
    return shares;
}

GoodsLine part(const GoodsLine &line, const Share &share, double amount, double slipRate)
{
    GoodsLine divided = line;
    const QString rate = rateName(share.tax.taxClass, share.tax.rate) + u"分"_s;
    divided.specification = line.specification.isEmpty() ? rate : line.specification + u' ' + rate;
    divided.quantity = 1;
    divided.price = amount;
    divided.amount = amount;
    divided.tax = besideSlips(share.tax, slipRate);
    return divided;
}

} // namespace

std::vector<GoodsLine> dividedOverRates(const GoodsLine &line, const std::vector<TaxableAmount> &goods,
                                        double slipRate)
{
    const std::vector<Share> shares = sharesIn(goods);
    if (shares.size() < 2) {
        GoodsLine whole = line;
        if (!shares.empty())
            whole.tax = besideSlips(shares.front().tax, slipRate);
        return {whole};
    }
    double sold = 0;
    for (const Share &share : shares)
        sold += share.sold;
    std::vector<GoodsLine> parts;
    double rest = line.amount;
    for (const Share &share : shares) {
        const bool isLast = &share == &shares.back();
        const double amount = isLast ? rest : truncatedYen(line.amount * share.sold / sold);
        rest -= amount;
        if (amount != 0)
            parts.push_back(part(line, share, amount, slipRate));
    }
    return parts;
}

base::Result<std::vector<GoodsLine>> addDiscount(db::Connection &connection, qint64 id, const GoodsLine &line,
                                                 double slipRate)
{
    const auto sums = slipSums(connection, id, slipRate);
    if (!sums)
        return sums.error();
    const std::vector<GoodsLine> parts = dividedOverRates(line, sums->goods, slipRate);
    for (const GoodsLine &part : parts) {
        if (const base::Status added = addLine(connection, id, part); !added)
            return added.error();
    }
    return parts;
}

} // namespace book

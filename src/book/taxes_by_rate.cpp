#include "book/taxes_by_rate.h"

#include "base/exact_sum.h"
#include "book/tax.h"

#include <cmath>
#include <map>
#include <numeric>

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

// What is taxed together.
struct Group
{
    GoodsTax taxClass;
    double rate;

    auto operator<=>(const Group &) const = default;
};

struct Sums
{
    base::ExactSum net;
    base::ExactSum gross;
    bool hasNet = false;
    bool hasGross = false;
};

Group groupOf(const TaxableAmount &amount)
{
    return {amount.taxClass == GoodsTax::Newspapers ? GoodsTax::Food : amount.taxClass, amount.rate};
}

base::Status checkRate(double rate)
{
    if (!std::isfinite(rate) || rate < 0 || rate > 100)
        return base::Error{u"消費税率が正しくありません。メイン画面の消費税率を確認してください。"_s};
    return {};
}

// Both kinds of amounts need a tax of net × rate / 100 + gross × rate / (100 + rate), whichever basis they
// are brought to; the basis decides which of the totals is truncated and which one follows.
base::Result<RateTax> taxed(const Group &group, const Sums &sums, Basis basis)
{
    const double net = sums.net.value();
    const double gross = sums.gross.value();
    if (!isCountable(net) || !isCountable(gross))
        return amountTooGreat();
    const double magnitude = std::abs(net) + std::abs(gross);
    const double within = gross * group.rate / (100 + group.rate);
    RateTax result{group.taxClass, group.rate};
    result.tax = truncatedYen(net * group.rate / 100 + within, sums.hasNet && sums.hasGross ? magnitude : 0);
    if (!sums.hasGross || (sums.hasNet && basis == Basis::Net)) {
        result.net = sums.hasGross ? truncatedYen(net + gross - within, magnitude) : net;
        result.gross = result.net + result.tax;
    } else {
        result.gross = sums.hasNet ? truncatedYen(net + net * group.rate / 100 + gross, magnitude) : gross;
        result.net = result.gross - result.tax;
    }
    return result;
}

base::Result<std::map<Group, Sums>> grouped(const std::vector<TaxableAmount> &amounts, Basis basis)
{
    std::map<Group, Sums> groups;
    for (const TaxableAmount &amount : amounts) {
        if (const base::Status good = checkRate(amount.rate); !good)
            return good.error();
        Sums &sums = groups[groupOf(amount)];
        const bool isNet = amount.basis.value_or(basis) == Basis::Net;
        (isNet ? sums.net : sums.gross).add(amount.amount);
        (isNet ? sums.hasNet : sums.hasGross) = true;
    }
    return groups;
}

} // namespace

base::Result<std::vector<RateTax>> taxesByRate(const std::vector<TaxableAmount> &amounts, Basis basis)
{
    const auto groups = grouped(amounts, basis);
    if (!groups)
        return groups.error();
    std::vector<RateTax> taxes;
    for (const auto &[group, sums] : *groups) {
        const auto tax = taxed(group, sums, basis);
        if (!tax)
            return tax.error();
        taxes.push_back(*tax);
    }
    return taxes;
}

bool isSlipsOwn(const std::vector<RateTax> &taxes, double slipRate)
{
    return taxes.size() == 1 && taxes.front().taxClass == GoodsTax::Standard &&
           taxes.front().rate == slipRate;
}

double sumOf(const std::vector<RateTax> &taxes)
{
    return std::accumulate(taxes.begin(), taxes.end(), 0.0,
                           [](double sum, const RateTax &tax) { return sum + tax.tax; });
}

base::Result<double> taxOf(const std::vector<TaxableAmount> &amounts, Basis basis)
{
    const auto taxes = taxesByRate(amounts, basis);
    return taxes ? base::Result<double>(sumOf(*taxes)) : taxes.error();
}

base::Result<double> unroundedTaxIn(const std::vector<TaxableAmount> &amounts)
{
    const auto groups = grouped(amounts, Basis::Gross);
    if (!groups)
        return groups.error();
    double sum = 0;
    for (const auto &[group, sums] : *groups) {
        const double gross = sums.gross.value();
        if (!isCountable(gross))
            return amountTooGreat();
        sum += cleaned(gross - gross / (1 + group.rate / 100), gross);
    }
    return sum;
}

} // namespace book

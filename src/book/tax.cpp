#include "book/tax.h"

#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace book
{

bool isCountable(double value) { return std::isfinite(value) && std::abs(value) <= greatestAmount; }

base::Error amountTooGreat()
{
    return {u"金額が大きすぎるため、計算できません。９０００億円以内になるように入力してください。"_s};
}

double cleaned(double value, double magnitude)
{
    const double whole = std::round(value);
    const double noise = std::abs(magnitude) * 2 * std::numeric_limits<double>::epsilon();
    return (std::abs(value - whole) <= noise ? whole : value) + 0.0; // no -0
}

double truncatedYen(double value, double magnitude)
{
    return std::trunc(cleaned(value, std::max(std::abs(value), magnitude))) + 0.0;
}

base::Result<double> lineProduct(double quantity, double price)
{
    const double product = quantity * price;
    if (!isCountable(quantity) || !isCountable(price) || !isCountable(product))
        return amountTooGreat();
    return cleaned(product, product);
}

base::Result<double> lineAmount(double quantity, double price)
{
    const auto product = lineProduct(quantity, price);
    if (!product)
        return product.error();
    return truncatedYen(*product);
}

base::Result<double> currency(double value)
{
    if (!isCountable(value))
        return amountTooGreat();
    // Twice, so that a half is a whole number, which the noise is cleaned off.
    const double twice = cleaned(value * 20000, value * 20000);
    return std::nearbyint(twice / 2) / 10000 + 0.0;
}

bool taxIsAdded(TaxClass taxClass, bool inclusive) { return taxClass != TaxClass::OnBill && !inclusive; }

base::Result<QString> shownTax(const std::vector<TaxableAmount> &amounts, TaxClass taxClass, bool inclusive,
                               bool showsIncluded)
{
    if (taxClass == TaxClass::OnDelivery && !inclusive) {
        const auto tax = taxOf(amounts, Basis::Net);
        return tax ? base::Result<QString>(text::formatAmount(*tax)) : tax.error();
    }
    if (!inclusive || !showsIncluded)
        return QString();
    const auto tax = unroundedTaxIn(amounts);
    if (!tax)
        return tax.error();
    // Twelve digits are all that the subtraction leaves; the rest would be noise (500.00000000000091).
    return text::formatPlain(QString::number(*tax, 'g', 12).toDouble());
}

TaxClass taxClassFrom(const QString &text)
{
    const int number = text.toInt();
    return number == 1 || number == 2 ? static_cast<TaxClass>(number) : TaxClass::OnDelivery;
}

QString nameOf(TaxClass taxClass)
{
    switch (taxClass) {
    case TaxClass::OnDelivery:
        break;
    case TaxClass::OnBill:
        return u"外税 （請求時）"_s;
    case TaxClass::Included:
        return u"内税"_s;
    }
    return u"外税 （納品時）"_s;
}

} // namespace book

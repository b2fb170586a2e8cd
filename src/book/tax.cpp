#include "book/tax.h"

#include "text/numbers.h"

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

// Decimal fractions have no exact binary form: 0.29 × 100 comes out as 28.999999999999996. What is no further
// from a whole number than the rounding of the few operations behind it is that number. \a magnitude: the
// greatest number that took part.
double cleaned(double value, double magnitude)
{
    const double whole = std::round(value);
    const double noise = std::abs(magnitude) * 2 * std::numeric_limits<double>::epsilon();
    return (std::abs(value - whole) <= noise ? whole : value) + 0.0; // no -0
}

double cleaned(double value) { return cleaned(value, value); }

double truncated(double value) { return std::trunc(cleaned(value)) + 0.0; }

bool fits(double value) { return std::isfinite(value) && std::abs(value) <= greatestAmount; }

base::Error tooGreat()
{
    return {u"金額が大きすぎるため、計算できません。９０００億円以内になるように入力してください。"_s};
}

base::Status checkTaxable(double total, double rate)
{
    if (!std::isfinite(rate) || rate < 0 || rate > 100)
        return base::Error{u"消費税率が正しくありません。メイン画面の消費税率を確認してください。"_s};
    if (!fits(total))
        return tooGreat();
    return {};
}

} // namespace

base::Result<double> lineProduct(double quantity, double price)
{
    const double product = quantity * price;
    if (!fits(quantity) || !fits(price) || !fits(product))
        return tooGreat();
    return cleaned(product);
}

base::Result<double> lineAmount(double quantity, double price)
{
    const auto product = lineProduct(quantity, price);
    if (!product)
        return product.error();
    return truncated(*product);
}

base::Result<double> currency(double value)
{
    if (!fits(value))
        return tooGreat();
    // Twice, so that a half is a whole number, which the noise is cleaned off.
    const double twice = cleaned(value * 20000);
    return std::nearbyint(twice / 2) / 10000 + 0.0;
}

base::Result<double> exclusiveTax(double total, double rate)
{
    if (const base::Status taxable = checkTaxable(total, rate); !taxable)
        return taxable.error();
    return truncated(total * rate / 100);
}

base::Result<double> includedTax(double total, double rate)
{
    if (const base::Status taxable = checkTaxable(total, rate); !taxable)
        return taxable.error();
    return cleaned(total - total / (1 + rate / 100), total);
}

bool taxIsAdded(TaxClass taxClass, bool inclusive) { return taxClass != TaxClass::OnBill && !inclusive; }

base::Result<QString> shownTax(double total, double rate, TaxClass taxClass, bool inclusive,
                               bool showsIncluded)
{
    if (taxClass == TaxClass::OnDelivery && !inclusive) {
        const auto tax = exclusiveTax(total, rate);
        return tax ? base::Result<QString>(text::formatAmount(*tax)) : tax.error();
    }
    if (!inclusive || !showsIncluded)
        return QString();
    const auto tax = includedTax(total, rate);
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

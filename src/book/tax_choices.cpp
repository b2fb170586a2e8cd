#include "book/tax_choices.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

using enum GoodsTax;

QString captionOf(GoodsTax taxClass, double rate)
{
    const QString name = rateName(taxClass, rate);
    if (taxClass == Food)
        return name + u" 食品"_s;
    return taxClass == Newspapers ? name + u" 新聞"_s : name;
}

// The rates that goods of \a taxClass had before \a date, the latest first, each once.
std::vector<double> earlierRates(const std::vector<TaxTerm> &terms, GoodsTax taxClass, const QDate &date,
                                 double now)
{
    std::vector<TaxTerm> ended;
    std::ranges::copy_if(terms, std::back_inserter(ended), [&](const TaxTerm &term) {
        return term.inForce && term.taxClass == taxClass && term.to.isValid() && term.to < date &&
               term.percent != now;
    });
    std::ranges::sort(ended, std::greater(), &TaxTerm::from);
    std::vector<double> rates;
    for (const TaxTerm &term : ended) {
        if (std::ranges::find(rates, term.percent) == rates.end())
            rates.push_back(term.percent);
    }
    return rates;
}

} // namespace

std::vector<TaxChoice> taxChoices(const std::vector<TaxTerm> &terms, const QDate &date)
{
    const TaxRates rates = inForce(terms);
    std::vector<TaxChoice> choices;
    if (!rates.on(date))
        return choices;
    for (const GoodsTax taxClass : {Standard, Food, Newspapers, Exempt, OutOfScope}) {
        if (isReduced(taxClass) && !rates.has(date, taxClass))
            continue; // taxed as everything else
        const double rate = rates.on(date, taxClass).value_or(0);
        choices.push_back({captionOf(taxClass, rate), {taxClass, rate}});
    }
    for (const GoodsTax taxClass : {Standard, Food, Newspapers}) {
        const double now = rates.on(date, taxClass).value_or(0);
        for (const double rate : earlierRates(terms, taxClass, date, now))
            choices.push_back({u"経過措置 "_s + captionOf(taxClass, rate), {taxClass, rate}, true});
    }
    return choices;
}

qsizetype choiceOf(const std::vector<TaxChoice> &choices, GoodsTax taxClass)
{
    const auto found = std::ranges::find_if(choices, [&](const TaxChoice &choice) {
        return !choice.isTransitional && choice.tax.taxClass == taxClass;
    });
    return found == choices.end() ? 0 : found - choices.begin();
}

QString taxMark(const std::optional<LineTax> &tax)
{
    if (!tax)
        return {};
    if (!isTaxed(tax->taxClass))
        return nameOf(tax->taxClass);
    return (isReduced(tax->taxClass) ? u"※"_s : QString()) + QString::number(tax->rate, 'g', 6) + u'%';
}

} // namespace book

#include "book/tax_rates.h"

#include "book/tax_terms.h"

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

const QDate firstTaxedDay(1989, 4, 1); // 消費税法附則第1条

} // namespace

bool isTaxed(GoodsTax taxClass) { return taxClass != GoodsTax::Exempt && taxClass != GoodsTax::OutOfScope; }

bool isReduced(GoodsTax taxClass) { return taxClass == GoodsTax::Food || taxClass == GoodsTax::Newspapers; }

std::optional<GoodsTax> goodsTaxFrom(const QVariant &stored)
{
    bool isNumber = false;
    const int number = stored.toInt(&isNumber);
    if (stored.isNull() || !isNumber || number < 0 || number > static_cast<int>(GoodsTax::OutOfScope))
        return std::nullopt;
    return static_cast<GoodsTax>(number);
}

std::optional<LineTax> besideSlips(const LineTax &tax, double slipRate)
{
    return tax == LineTax{GoodsTax::Standard, slipRate} ? std::nullopt : std::optional(tax);
}

TaxRates::TaxRates(std::vector<Term> terms)
    : m_terms(std::move(terms))
{}

TaxRates TaxRates::keptByHand(double percent)
{
    TaxRates rates{std::vector<Term>()};
    rates.m_byHand = percent;
    return rates;
}

base::Result<TaxRates> TaxRates::read(db::Connection &connection)
{
    const auto terms = taxTerms(connection);
    return terms ? base::Result<TaxRates>(inForce(*terms)) : terms.error();
}

std::optional<double> TaxRates::on(const QDate &date, GoodsTax taxClass) const
{
    if (!isTaxed(taxClass))
        return 0.0;
    if (m_byHand)
        return m_byHand;
    if (!date.isValid())
        return std::nullopt;
    const Term *term = termOn(date, taxClass);
    if (!term)
        term = termOn(date, GoodsTax::Standard);
    if (term)
        return term->percent;
    return date < firstTaxedDay ? std::optional(0.0) : std::nullopt;
}

const TaxRates::Term *TaxRates::termOn(const QDate &date, GoodsTax taxClass) const
{
    const Term *latest = nullptr;
    for (const Term &term : m_terms) {
        const bool hasDay = term.from <= date && (!term.to.isValid() || date <= term.to);
        if (term.taxClass == taxClass && hasDay && (!latest || latest->from <= term.from))
            latest = &term;
    }
    return latest;
}

} // namespace book

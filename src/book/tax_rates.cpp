#include "book/tax_rates.h"

#include "db/connection.h"

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

QDate dayFrom(const QVariant &stored) { return QDate::fromString(stored.toString(), u"yyyy-MM-dd"_s); }

} // namespace

bool isTaxed(GoodsTax taxClass) { return taxClass != GoodsTax::Exempt && taxClass != GoodsTax::OutOfScope; }

std::optional<GoodsTax> goodsTaxFrom(const QVariant &stored)
{
    bool isNumber = false;
    const int number = stored.toInt(&isNumber);
    if (stored.isNull() || !isNumber || number < 0 || number > static_cast<int>(GoodsTax::OutOfScope))
        return std::nullopt;
    return static_cast<GoodsTax>(number);
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
    const auto rows = connection.select(
        u"SELECT 税区分, 開始日, 終了日, 税率 FROM 税率 WHERE 有効 = 1 ORDER BY 開始日, 税率ID"_s);
    if (!rows)
        return rows.error();
    std::vector<Term> terms;
    for (const QVariantList &row : rows->rows) {
        const auto taxClass = goodsTaxFrom(row.at(0));
        const QDate from = dayFrom(row.at(1));
        if (taxClass && from.isValid())
            terms.push_back({*taxClass, from, dayFrom(row.at(2)), row.at(3).toDouble()});
    }
    return TaxRates(std::move(terms));
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
    return term ? term->percent : 0.0;
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

#include "slips/documents/invoice_rates.h"

#include "book/tax_terms.h"
#include "text/dates.h"
#include "text/numbers.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using book::GoodsTax;

namespace slips
{

namespace
{

// Of a line: one of the slip's own rate is not.
bool isReduced(const std::optional<GoodsTax> &taxClass) { return taxClass && book::isReduced(*taxClass); }

QString percent(double rate) { return QString::number(rate, 'g', 6) + u'%'; }

QString nameOf(const book::RateTax &rate, bool inclusive)
{
    const bool tellsBasis = inclusive && book::isTaxed(rate.taxClass);
    return book::rateName(rate.taxClass, rate.rate) + (tellsBasis ? u"税込"_s : QString());
}

// Of goods, the highest first: most of what is sold at a reduced rate is.
QList<double> reducedRates(const book::Slip &slip)
{
    QList<double> rates;
    for (const book::SlipLine &line : slip.lines) {
        const double rate = line.taxRate.value_or(slip.taxRate);
        if (isReduced(line.taxClass) && !line.isTax() && !rates.contains(rate))
            rates << rate;
    }
    std::ranges::sort(rates, std::greater());
    return rates;
}

// What the slip's tax lines say of \a rate.
double bookedTax(const book::Slip &slip, const book::RateTax &rate)
{
    double tax = 0;
    for (const book::SlipLine &line : slip.lines) {
        if (line.isTax() && line.taxRate.value_or(slip.taxRate) == rate.rate &&
            isReduced(line.taxClass) == isReduced(rate.taxClass))
            tax += line.amount;
    }
    return tax;
}

// A tax line of a rate that nothing was sold at would stand in no row.
bool fits(const book::Slip &slip, const std::vector<InvoiceRate> &rates)
{
    double told = 0;
    double booked = 0;
    for (const InvoiceRate &rate : rates)
        told += rate.tax;
    for (const book::SlipLine &line : slip.lines)
        booked += line.isTax() ? line.amount : 0;
    return told == booked;
}

} // namespace

base::Result<std::vector<InvoiceRate>> invoiceRates(const book::PrintedSlip &printed)
{
    const book::Slip &slip = printed.slip;
    const bool inclusive = printed.includedTax.has_value();
    if (!inclusive && slip.taxClass == book::TaxClass::OnBill && !book::hasTaxLine(slip))
        return std::vector<InvoiceRate>();
    const auto taxes = book::taxesByRate(inclusive ? book::taxableAll(slip.lines, printed.rate)
                                                   : book::taxableGoods(slip.lines, printed.rate),
                                         inclusive ? book::Basis::Gross : book::Basis::Net);
    if (!taxes)
        return taxes.error();
    if (!inclusive && !book::hasTaxLine(slip) && book::sumOf(*taxes) != 0)
        return std::vector<InvoiceRate>();
    std::vector<InvoiceRate> rates;
    for (const book::RateTax &rate : *taxes)
        rates.push_back({nameOf(rate, inclusive), inclusive ? rate.gross : rate.net,
                         inclusive ? rate.tax : bookedTax(slip, rate)});
    if (!inclusive && !fits(slip, rates))
        rates.clear();
    return rates;
}

base::Result<QStringList> returnNotices(const book::PrintedSlip &printed,
                                        const std::optional<book::OriginalSlip> &original)
{
    const bool inclusive = printed.includedTax.has_value();
    const auto taxes =
        book::returnedAt(printed.slip, printed.rate, inclusive ? book::Basis::Gross : book::Basis::Net);
    if (!taxes)
        return taxes.error();
    if (!book::needsReturnDocument(*taxes))
        return QStringList();
    QStringList notices{
        original ? u"【返還】元の伝票 %1　%2"_s.arg(original->number, text::formatDate(original->date))
                 : u"【返還】"_s};
    for (const book::RateTax &tax : *taxes)
        notices << u"　%1対象 %2 円"_s.arg(nameOf(tax, inclusive),
                                           text::formatAmount(inclusive ? tax.gross : tax.net));
    return notices;
}

QString roomRemark(const std::vector<InvoiceRate> &rates)
{
    if (rates.size() <= mostInvoiceRates)
        return {};
    return u"税率が %1 種類あり、税率別の欄に入りきりません。伝票を分けてください。"_s.arg(rates.size());
}

QString reducedMark(const book::SlipLine &line, const book::Slip &slip)
{
    if (!isReduced(line.taxClass) || line.isTax())
        return {};
    static const QString marks = u"※◆◇"_s;
    const auto place = reducedRates(slip).indexOf(line.taxRate.value_or(slip.taxRate));
    return marks.sliced(std::min(place, marks.size() - 1), 1);
}

QString reducedLegend(const book::Slip &slip)
{
    QStringList words;
    for (const book::SlipLine &line : slip.lines) {
        if (const QString mark = reducedMark(line, slip); !mark.isEmpty())
            words << u"%1は軽減税率（%2）"_s.arg(mark, percent(line.taxRate.value_or(slip.taxRate)));
    }
    words.removeDuplicates();
    words.sort(); // ※, ◆, ◇: so they come in the codes
    return words.isEmpty() ? QString() : words.join(u'、') + u"対象"_s;
}

} // namespace slips

#include "reports/bills/bill_invoice_words.h"

#include "reports/bills/bill_paper.h"
#include "text/numbers.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

bool isInclusive(const BillPaper &paper) { return paper.bill.customer.taxClass == book::TaxClass::Included; }

bool isTaxBooked(const BillPaper &paper)
{
    return paper.bill.sums.unbooked.value_or(0) == 0 && !paper.bill.sums.cannotTax;
}

double taxOfRates(const BillPaper &paper)
{
    double tax = 0;
    for (const slips::InvoiceRate &rate : paper.bill.rates)
        tax += rate.tax;
    return tax;
}

} // namespace

bool isInvoice(const BillPaper &paper)
{
    return paper.bill.customer.taxClass == book::TaxClass::OnBill ||
           (isInclusive(paper) && paper.includedOnBill);
}

bool bearsRates(const BillPaper &paper)
{
    return isTaxBooked(paper) && !paper.bill.sums.due && paper.bill.untaxedSlips.isEmpty();
}

QString taxWords(const BillPaper &paper)
{
    const BillSums &sums = paper.bill.sums;
    if (isInclusive(paper) && sums.tax() == 0)
        return paper.bill.rates.empty() ? u"内税"_s : u"内 "_s + text::formatAmount(taxOfRates(paper));
    return isTaxBooked(paper) ? text::formatAmount(sums.tax()) : u"別途"_s;
}

QString noteNumberWords(const QStringList &numbers)
{
    constexpr qsizetype longest = 44; // characters, as far as they can be read in one line
    const QString all = numbers.join(u'、');
    if (all.size() <= longest)
        return all;
    return u"%1 ～ %2（%3 件、明細の伝票番号の通り）"_s.arg(numbers.front(), numbers.back())
        .arg(numbers.size());
}

} // namespace reports

#include "reports/bills/bill_header.h"

#include "slips/documents/note_values.h"
#include "text/cp932.h"
#include "text/postal_code.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr int indent = 3;       // half-width characters
constexpr int codeColumns = 21; // of them, before the number

QString indented(const QString &text) { return QString(indent, u' ') + text; }

QString padded(const QString &text, int columns)
{
    const qsizetype missing = columns - text::cp932Bytes(text);
    return text + QString(std::max<qsizetype>(missing, 1), u' ');
}

// Whoever has a name of two lines has his honorific further off.
QString honoured(const BillCustomer &customer, const QString &name, const QString &gap)
{
    const QString honorific = slips::honorificOf(addresseeOf(customer));
    return honorific.isEmpty() ? name : name + gap + honorific;
}

QStringList nameLines(const BillCustomer &customer)
{
    if (customer.name2.isEmpty())
        return {u"　　"_s + honoured(customer, customer.name1, u"　"_s)};
    return {u"　　"_s + customer.name1, u"　　"_s + honoured(customer, customer.name2, u"　　"_s)};
}

QString numberFor(const BillCustomer &customer, const book::Period &period)
{
    return u"%1-%2"_s.arg(customer.id.value_or(0)).arg(period.to.toString(u"yyyyMMdd"_s));
}

} // namespace

QString billNumber(const Bill &bill) { return numberFor(bill.customer, bill.period); }

QString billNumber(const CustomerBill &bill) { return numberFor(bill.customer, bill.period); }

book::Slip addresseeOf(const BillCustomer &customer)
{
    book::Slip slip;
    slip.counterpart = customer.id.value_or(0);
    slip.name1 = customer.name1;
    slip.name2 = customer.name2;
    slip.zip = customer.zip;
    slip.address1 = customer.address1;
    slip.address2 = customer.address2;
    slip.tel = customer.tel;
    slip.fax = customer.fax;
    slip.code = customer.code;
    slip.honorific = customer.unknown ? QString() : customer.honorific;
    slip.taxClass = customer.taxClass;
    return slip;
}

QStringList billHeaderLines(const Bill &bill)
{
    const BillCustomer &customer = bill.customer;
    QStringList lines;
    if (!customer.zip.isEmpty())
        lines << u"〒"_s + text::shownPostalCode(customer.zip);
    for (const QString &address : {customer.address1, customer.address2}) {
        if (!address.isEmpty())
            lines << indented(address);
    }
    lines << nameLines(customer);
    lines << indented(padded(customer.code, codeColumns) + u"No. "_s + billNumber(bill));
    if (!customer.tel.isEmpty())
        lines << indented(u"TEL "_s + customer.tel);
    if (!customer.fax.isEmpty())
        lines << indented(u"FAX "_s + customer.fax);
    return lines;
}

} // namespace reports

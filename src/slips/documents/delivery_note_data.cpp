#include "book/printed_slip.h"
#include "book/tax_terms.h"
#include "masters/registration_number.h"
#include "slips/documents/delivery_note.h"
#include "text/numbers.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

base::Status addInvoice(db::Connection &connection, const book::PrintedSlip &printed, DeliveryNoteData &note)
{
    auto rates = invoiceRates(printed);
    const auto original = book::originalOf(connection, printed.slip.id);
    if (!rates || !original)
        return rates ? original.error() : rates.error();
    note.rates = std::move(*rates);
    if (note.rates.empty())
        return {};
    auto returned = returnNotices(printed, *original);
    if (returned)
        note.returned = std::move(*returned);
    return returned.status();
}

// One rate says nothing that the tax beside it does not.
base::Result<QString> includedRates(const book::PrintedSlip &printed)
{
    const auto taxes =
        book::taxesByRate(book::taxableAll(printed.slip.lines, printed.rate), book::Basis::Gross);
    if (!taxes)
        return taxes.error();
    QStringList rates;
    for (const book::RateTax &tax : *taxes) {
        if (book::isTaxed(tax.taxClass))
            rates << book::rateName(tax.taxClass, tax.rate) + u" ¥"_s + text::formatAmount(tax.tax);
    }
    return rates.size() == 1 ? rates.front().section(u' ', 0, 0) : rates.join(u'・');
}

} // namespace

base::Result<DeliveryNoteData> readDeliveryNote(db::Connection &connection, qint64 id,
                                                const DeliveryNoteOptions &options)
{
    const auto slip = book::readSlip(connection, id, book::Party::Customer);
    if (!slip)
        return slip.error();
    const auto company = masters::ownCompany(connection);
    if (!company)
        return company.error();
    auto printed = book::taxedForPrint(*slip, {options.inclusive, options.closing});
    if (!printed)
        return printed.error();
    DeliveryNoteData note;
    note.sender = company->value_or(masters::OwnCompany());
    const bool isInvoice = masters::isRegistrationNumber(note.sender.registrationNumber) &&
                           !(printed->includedTax && options.includedOnBill);
    if (isInvoice) {
        if (const base::Status added = addInvoice(connection, *printed, note); !added)
            return added.error();
    }
    const auto included = printed->includedTax ? includedRates(*printed) : base::Result<QString>(QString());
    if (!included)
        return included.error();
    note.includedRates = *included;
    note.reducedLegend = reducedLegend(printed->slip);
    note.slip = std::move(printed->slip);
    note.total = printed->total;
    note.includedTax = printed->includedTax;
    note.companyName = options.companyName;
    note.memo = options.memo;
    note.offsets = options.offsets;
    return note;
}

} // namespace slips

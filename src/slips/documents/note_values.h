#pragma once

#include "book/slip_reader.h"
#include "masters/own_company.h"
#include "printing/forms/form_values.h"
#include "slips/documents/invoice_rates.h"

// What the printed slips for customers, delivery note and estimate, show alike.
namespace slips
{

/// How a printed slip names its sender.
enum class CompanyName {
    Plain,    // 会社名1 and 会社名2
    Omitted,  // left off, where the paper bears it already
    Extended, // the rich-text block in their place
};

/// The name of the sheets' slot for the extended company-name block.
inline constexpr const char16_t *companyNameSlot = u"社名";

/// The items of slip, sender, addressee and lines.
printing::FormItems noteItems();

/// Their values, the addressee's names excepted.
printing::FormValues noteValues(const book::Slip &slip, const masters::OwnCompany &sender, CompanyName name);

/// The honorific behind the addressee: the one chosen for the customer, else 様; none where the name ends in
/// one already.
QString honorificOf(const book::Slip &slip);

/// Adds the addressee's names, the last one with its honorific. What lists call a deleted customer is not
/// honoured.
void addAddressee(printing::FormRecord &items, const book::Slip &slip);

/// Adds what was sold and taxed at each of \a rates, as far as there is room.
void addRates(printing::FormRecord &items, const std::vector<InvoiceRate> &rates);

} // namespace slips

#pragma once

#include "masters/own_company.h"
#include "printing/forms/form.h"
#include "printing/forms/form_values.h"
#include "printing/sheet.h"
#include "shipping/slips/shipment.h"

// The gift order sheet (贈答品承り票) on paper: what one sender has sent to whom, which he signs in the shop.
namespace shipping
{

struct GiftSheet
{
    masters::OwnCompany shop;
    std::vector<Shipment> parcels; // of one sender; there is one at least
    QString employee{};            // who takes the order
};

/// Its layout file.
inline constexpr const char16_t *giftSheetLayout = u"gift-order-a4.toml";

/// What a layout of it may show, and the offsets that move it.
const printing::FormItems &giftSheetItems();

/// Its pages. \a shifts: the offsets of giftSheetItems(), millimetres.
std::vector<printing::Sheet> giftSheetPages(const GiftSheet &sheet, const printing::Form &form,
                                            const QHash<QString, double> &shifts);

} // namespace shipping

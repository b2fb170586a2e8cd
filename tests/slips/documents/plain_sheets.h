#pragma once

#include "printing/forms/form_files.h"
#include "slips/documents/delivery_note.h"
#include "slips/documents/estimate.h"

// The documents on plain paper, as the built-in layouts have them.

inline std::vector<printing::Sheet> plainSheets(const slips::DeliveryNoteData &data)
{
    static const printing::Form form =
        printing::builtInForm(QString::fromUtf16(slips::plainDeliveryNoteLayout), slips::deliveryNoteItems());
    return slips::deliveryNote(data, form);
}

inline std::vector<printing::Sheet> plainSheets(const slips::EstimateData &data)
{
    static const printing::Form form =
        printing::builtInForm(QString::fromUtf16(slips::estimateLayout), slips::estimateItems());
    return slips::estimateSheets(data, form);
}

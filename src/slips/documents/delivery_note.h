#pragma once

#include "book/slip_reader.h"
#include "db/connection.h"
#include "masters/own_company.h"
#include "printing/forms/form.h"
#include "slips/documents/note_values.h"

#include <optional>
#include <vector>

// The delivery note (納品書).
namespace slips
{

/// The printer's adjustment of the note.
struct NoteOffsets
{
    int down = 0;           // steps of 1.41 mm
    int right = 0;          // steps of 1.75 mm
    int addresseeRight = 0; // half-width characters
};

/// What one delivery note says.
struct DeliveryNoteData
{
    masters::OwnCompany sender;
    CompanyName companyName = CompanyName::Plain;
    book::Slip slip;                   // with the tax line, where one is due
    double total = 0;                  // yen
    std::optional<double> includedTax; // whole yen, of prices that include it
    QString memo;
    NoteOffsets offsets;
};

/// What the printing screen adds to the stored slip.
struct DeliveryNoteOptions
{
    bool inclusive = false;                // prices include the tax
    std::optional<book::TaxRates> closing; // at which closing the slip will tax it; empty: it is closed
    QString memo;
    CompanyName companyName = CompanyName::Plain;
    NoteOffsets offsets;
};

/// The note of the sales slip \a id as the database has it. A slip that is still open gets the tax lines that
/// closing it will add.
base::Result<DeliveryNoteData> readDeliveryNote(db::Connection &connection, qint64 id,
                                                const DeliveryNoteOptions &options);

/// The layout file of the note on plain A4 paper.
inline constexpr const char16_t *plainDeliveryNoteLayout = u"delivery-note-a4.toml";

/// What a layout of the note may show.
const printing::FormItems &deliveryNoteItems();

/// The note's sheets, at least one. A full sheet ends with "次葉へ繰越" and the next one goes on.
std::vector<printing::Sheet> deliveryNote(const DeliveryNoteData &data, const printing::Form &form);

} // namespace slips

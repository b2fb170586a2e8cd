#pragma once

#include "book/slip_reader.h"
#include "db/connection.h"
#include "masters/own_company.h"
#include "printing/forms/form.h"
#include "printing/print_offsets.h"
#include "slips/documents/invoice_rates.h"
#include "slips/documents/note_values.h"

#include <optional>
#include <vector>

// The delivery note (納品書).
namespace slips
{

/// The printer's adjustment of the note and of the receipt of goods on the same sheet.
struct NoteOffsets
{
    int down = 0;           // steps of 1.41 mm, of the note
    int right = 0;          // steps of 1.75 mm, of both
    int addresseeRight = 0; // half-width characters
    int receiptDown = 0;    // steps of 1.41 mm
    bool receiptTotalsHigher = false;
};

/// As the printer dialogs keep it.
NoteOffsets noteOffsets(const printing::NoteSteps &steps);

/// What one delivery note says.
struct DeliveryNoteData
{
    masters::OwnCompany sender;
    CompanyName companyName = CompanyName::Plain;
    book::Slip slip;                   // with the tax line, where one is due
    double total = 0;                  // yen
    std::optional<double> includedTax; // whole yen, of prices that include it
    QString includedRates;             // at which: "10%", "10% ¥300・軽減8% ¥400"
    std::vector<InvoiceRate> rates;    // of a shop that issues qualified invoices
    QString reducedLegend;
    QStringList returned; // what the note says of goods that came back
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
    bool includedOnBill = false; // the invoice of prices that include the tax is the bill
};

/// The note of the sales slip \a id as the database has it. A slip that is still open gets the tax lines that
/// closing it will add.
base::Result<DeliveryNoteData> readDeliveryNote(db::Connection &connection, qint64 id,
                                                const DeliveryNoteOptions &options);

/// The layout files of the note: on plain A4 paper, and on the forms that there are for it.
inline constexpr const char16_t *plainDeliveryNoteLayout = u"delivery-note-a4.toml";
inline constexpr const char16_t *continuousDeliveryNoteLayout = u"delivery-note-1149.toml";
inline constexpr const char16_t *receiptDeliveryNoteLayout = u"delivery-note-bp0201.toml";
inline constexpr const char16_t *designatedDeliveryNoteLayout = u"delivery-note-designated.toml";

/// The layout file for \a paper, the panel's choice; what is no form of its own is plain A4 paper.
/// \a designated: the customer wants the form that was agreed upon, whatever the panel says.
QString deliveryNoteLayout(const QString &paper, bool designated);

/// The customer's order number in \a memo, behind "注文番号" or "発注番号"; an empty text where there is
/// none. It is taken out of the memo, unless a sentence goes on behind it.
QString takeOrderNumber(QString &memo);

/// How far \a offsets move what layouts call by the settings' names, millimetres.
QHash<QString, double> noteShifts(const NoteOffsets &offsets);

/// What a layout of the note may show.
const printing::FormItems &deliveryNoteItems();

/// The note's sheets, at least one. A full sheet ends with "次葉へ繰越" and the next one goes on.
std::vector<printing::Sheet> deliveryNote(const DeliveryNoteData &data, const printing::Form &form);

} // namespace slips

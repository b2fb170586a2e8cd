#pragma once

#include "db/connection.h"
#include "masters/own_company.h"
#include "printing/forms/form.h"
#include "printing/forms/form_values.h"
#include "printing/print_offsets.h"
#include "reports/bills/bill.h"
#include "slips/documents/note_values.h"

#include <map>

// The printed bill (請求書).
namespace reports
{

/// The printer's adjustment of bills.
struct BillOffsets
{
    int down = 0;           // steps of 1.41 mm
    int right = 0;          // steps of 1.75 mm
    int addresseeRight = 0; // half-width characters
};

/// As the printer dialogs keep it.
BillOffsets billOffsets(const printing::NoteSteps &steps);

/// What one printed bill says.
struct BillPaper
{
    Bill bill;
    masters::OwnCompany sender;
    slips::CompanyName companyName = slips::CompanyName::Plain;
    BillOffsets offsets;
    bool salesOnly = false;      // billed is the period's sales alone
    bool includedOnBill = false; // of prices that include the tax the bill is the invoice
    QString message;             // of the shop, below the statement
    /// What a bill that is the invoice says of goods that came back, below the lines of their slip.
    std::map<qint64, QStringList> returned;
};

/// What the shop and its screens add to a bill.
struct BillPaperOptions
{
    slips::CompanyName companyName = slips::CompanyName::Plain;
    BillOffsets offsets;
    bool salesOnly = false;
    bool includedOnBill = false;
    QString message;
};

/// The paper of \a bill, with what it needs of the own company and of the slips of returned goods.
base::Result<BillPaper> readBillPaper(db::Connection &connection, const Bill &bill,
                                      const BillPaperOptions &options);

/// The layout files of the bill: on plain A4 paper, and on the continuous form.
inline constexpr const char16_t *plainBillLayout = u"bill-a4.toml";
inline constexpr const char16_t *continuousBillLayout = u"bill-1148.toml";

/// The layout file for \a paper, the panel's choice; what is no form of its own is plain A4 paper.
QString billLayout(const QString &paper);

/// What a layout of the bill may show.
const printing::FormItems &billItems();

/// How far \a offsets move what layouts call by the settings' names, millimetres. Where the company's name is
/// left off, a form of lines begins one line higher.
QHash<QString, double> billShifts(const BillOffsets &offsets, bool isNameOmitted);

/// The bill's sheets, at least one. A full sheet ends with "次葉へ繰越" and the balance so far, and the next
/// one goes on.
std::vector<printing::Sheet> billSheets(const BillPaper &paper, const printing::Form &form);

} // namespace reports

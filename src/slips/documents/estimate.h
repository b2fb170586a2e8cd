#pragma once

#include "book/printed_slip.h"
#include "db/connection.h"
#include "printing/forms/form.h"
#include "slips/documents/note_values.h"

// The estimate (御見積書).
namespace slips
{

/// What an estimate's total says about the tax.
enum class EstimateTax {
    Added,    // a line of tax stands below the goods
    Included, // the prices include it
    Separate, // it comes with the bill
    Untold,   // the books do not say which
};

/// What the clerk adds when the estimate is printed. What is empty is left off.
struct EstimateTerms
{
    QDate validUntil;
    QDate deliveryDate;
    QString payment; // 取引方法
    QString place;   // 受渡場所
    QString remarks; // lines of 備考
};

/// What one estimate says.
struct EstimateData
{
    masters::OwnCompany sender;
    CompanyName companyName = CompanyName::Plain;
    book::Slip slip;  // the lines without the tax
    double goods = 0; // yen
    double tax = 0;   // yen; added to the goods, or included in them
    EstimateTax taxed = EstimateTax::Untold;
    std::vector<InvoiceRate> rates; // of a registered shop, where there are several or a reduced one
    QString reducedLegend;          // explains the mark of reduced rates
    EstimateTerms terms;

    /// What the customer is to pay, as far as the estimate tells.
    [[nodiscard]] double total() const { return taxed == EstimateTax::Added ? goods + tax : goods; }
};

/// How the tax of an estimate to be printed is known.
struct EstimateReading
{
    std::optional<bool> inclusive; // prices include the tax; empty: as the slip's tax class and lines tell
    std::optional<book::TaxRates> closing; // at which closing the slip will tax it; empty: it is closed
};

/// The estimate \a id as the database has it, its terms left empty. One that is still open gets the tax that
/// closing it will add.
base::Result<EstimateData> readEstimate(db::Connection &connection, qint64 id,
                                        const EstimateReading &reading);

/// "（消費税込）", "（消費税別途）"; empty where the books do not say.
QString taxWords(EstimateTax taxed);

/// The layout file of the estimate on plain A4 paper.
inline constexpr const char16_t *estimateLayout = u"estimate-a4.toml";

/// What a layout of the estimate may show.
const printing::FormItems &estimateItems();

/// The estimate's sheets, at least one. A full sheet ends with "次葉へ繰越" and the next one goes on.
std::vector<printing::Sheet> estimateSheets(const EstimateData &data, const printing::Form &form);

} // namespace slips

#include "book/printed_slip.h"
#include "book/returned_goods.h"
#include "reports/bills/bill_invoice_words.h"
#include "reports/bills/bill_paper.h"
#include "slips/documents/invoice_rates.h"

#include <set>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

std::set<qint64> slipsWithReturns(const Bill &bill)
{
    std::set<qint64> slips;
    for (const BillRow &row : bill.rows) {
        if (row.kind == BillRowKind::Goods && row.quantity.value_or(0) < 0)
            slips.insert(row.slip);
    }
    return slips;
}

base::Result<QStringList> noticesOf(db::Connection &connection, qint64 id, bool inclusive)
{
    const auto slip = book::readSlip(connection, id, book::Party::Customer);
    const auto original = book::originalOf(connection, id);
    if (!slip || !original)
        return slip ? original.error() : slip.error();
    const auto printed = book::taxedForPrint(*slip, {inclusive, std::nullopt});
    return printed ? slips::returnNotices(*printed, *original) : base::Result<QStringList>(printed.error());
}

base::Status addReturned(db::Connection &connection, BillPaper &paper)
{
    if (!isInvoice(paper))
        return {};
    const bool inclusive = paper.bill.customer.taxClass == book::TaxClass::Included;
    for (const qint64 slip : slipsWithReturns(paper.bill)) {
        auto notices = noticesOf(connection, slip, inclusive);
        if (!notices)
            return notices.error();
        if (!notices->isEmpty())
            paper.returned.emplace(slip, std::move(*notices));
    }
    return {};
}

} // namespace

base::Result<BillPaper> readBillPaper(db::Connection &connection, const Bill &bill,
                                      const BillPaperOptions &options)
{
    const auto company = masters::ownCompany(connection);
    if (!company)
        return company.error();
    BillPaper paper{.bill = bill,
                    .sender = company->value_or(masters::OwnCompany()),
                    .companyName = options.companyName,
                    .offsets = options.offsets,
                    .salesOnly = options.salesOnly,
                    .includedOnBill = options.includedOnBill,
                    .message = options.message,
                    .returned = {}};
    const base::Status added = addReturned(connection, paper);
    return added ? base::Result<BillPaper>(std::move(paper)) : added.error();
}

} // namespace reports

#include "reports/bills/bill_tax.h"

#include "book/printed_slip.h"
#include "db/transaction.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

base::Status addLines(db::Connection &connection, const book::NewSlip &slip, qint64 id, double tax,
                      const std::vector<book::RateTax> &taxes)
{
    if (taxes.empty())
        return book::addTaxLine(connection, id, tax);
    for (const book::SlipLine &line : book::taxLinesOf(taxes, slip.taxRate)) {
        if (const base::Status added = book::addTaxLine(connection, id, line); !added)
            return added;
    }
    return {};
}

// What may have been changed of it: the customer's address is no part of the slip.
bool isUnchanged(const book::Slip &written, const book::Slip &now)
{
    return now.number == written.number && now.date == written.date &&
           now.counterpart == written.counterpart && now.lines == written.lines;
}

} // namespace

std::vector<book::RateTax> billTaxes(double tax, const BillSums &sums)
{
    std::vector<book::RateTax> taxes = sums.unbookedRates;
    std::erase_if(taxes, [](const book::RateTax &one) { return one.tax == 0; });
    if (sums.unbooked == tax)
        return taxes;
    if (taxes.size() != 1)
        return {};
    taxes.front().tax = tax;
    return taxes;
}

base::Result<BillTaxSlip> enterBillTax(db::Connection &connection, const book::NewSlip &slip, double tax,
                                       const std::vector<book::RateTax> &taxes)
{
    if (tax == 0)
        return base::Error{u"消費税が０円のため、伝票を保存しませんでした。金額を入力し直してください。"_s};
    return db::atomically(connection, [&]() -> base::Result<BillTaxSlip> {
        book::NewSlip whole = slip;
        whole.needsClosing = false;
        const auto header = book::saveHeader(connection, whole);
        if (!header)
            return header.error();
        if (const base::Status added = addLines(connection, slip, header->id, tax, taxes); !added)
            return added.error();
        auto written = book::readSlip(connection, header->id, book::Party::Customer);
        if (!written)
            return written.error();
        return BillTaxSlip{*header, std::move(*written)};
    });
}

base::Status cancelBillTax(db::Connection &connection, const BillTaxSlip &slip)
{
    return db::atomically(connection, [&]() -> base::Status {
        const auto now = book::readSlip(connection, slip.header.id, book::Party::Customer);
        if (!now || !isUnchanged(slip.written, *now))
            return base::Error{
                u"伝票 %1 はほかのプログラムで変更または削除されたため、取り消しませんでした。"_s.arg(
                    slip.header.number)};
        return book::deleteSlip(connection, slip.header.id);
    });
}

} // namespace reports

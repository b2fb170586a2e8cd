#include "reports/purchases/purchase_tax.h"

#include "db/transaction.h"

using namespace Qt::StringLiterals;

namespace reports
{

const book::CounterpartSearch suppliersTaxedOnBill{
    book::Party::Supplier,
    book::supplierSearch.columns,
    u"(消費税区分 = 1)",
};

const book::CounterpartSearch suppliersTaxedOnDelivery{
    book::Party::Supplier, book::supplierSearch.columns,
    u"(COALESCE(消費税区分, 0) = 0)", // empty counts as 0
};

base::Result<TaxSlip> enterPurchaseTax(db::Connection &connection, const book::NewSlip &slip, double tax)
{
    if (tax == 0)
        return base::Error{u"消費税が０円のため、伝票を保存しませんでした。金額を入力し直してください。"_s};
    return db::atomically(connection, [&]() -> base::Result<TaxSlip> {
        book::NewSlip whole = slip;
        whole.needsClosing = false;
        const auto header = book::saveHeader(connection, whole);
        if (!header)
            return header.error();
        if (const base::Status added = book::addTaxLine(connection, header->id, tax); !added)
            return added.error();
        return TaxSlip{*header, tax};
    });
}

base::Status cancelPurchaseTax(db::Connection &connection, const TaxSlip &slip)
{
    return db::atomically(connection, [&]() -> base::Status {
        const auto unchanged = book::holdsTaxAlone(connection, slip.header, slip.tax);
        if (!unchanged)
            return unchanged.error();
        if (!*unchanged)
            return base::Error{
                u"伝票 %1 はほかのプログラムで変更または削除されたため、取り消しませんでした。"_s.arg(
                    slip.header.number)};
        return book::deleteSlip(connection, slip.header.id);
    });
}

QDate taxDate(const book::Period &period, const QDate &today)
{
    return today < period.from || today > period.to ? period.to : today;
}

} // namespace reports

#include "slips/purchase_tax.h"

#include "db/transaction.h"

using namespace Qt::StringLiterals;

namespace slips
{

const CounterpartSearch suppliersTaxedOnBill{
    Party::Supplier,
    u"SELECT 仕入先ID, 仕入先名1, 仕入先名2, 住所1, TEL1, 消費税区分, 仕入先名キー FROM 仕入先 "
    "WHERE (仕入先名キー LIKE ?) AND (消費税区分 = 1) ORDER BY 仕入先ID",
    supplierSearch.byId,
    u"仕入先ID",
};

const CounterpartSearch suppliersTaxedOnDelivery{
    Party::Supplier,
    u"SELECT 仕入先ID, 仕入先名1, 仕入先名2, 住所1, TEL1, 消費税区分, 仕入先名キー FROM 仕入先 "
    "WHERE (仕入先名キー LIKE ?) AND (COALESCE(消費税区分, 0) = 0) ORDER BY 仕入先ID", // empty counts as 0
    supplierSearch.byId,
    u"仕入先ID",
};

db::Result<TaxSlip> enterPurchaseTax(db::Connection &connection, const NewSlip &slip, double tax)
{
    if (tax == 0)
        return db::Error{u"消費税が０円のため、伝票を保存しませんでした。金額を入力し直してください。"_s};
    db::Transaction transaction(connection);
    if (const db::Status begun = transaction.begin(); !begun)
        return begun.error();
    const auto header = saveHeader(connection, slip);
    if (!header)
        return header.error();
    if (const db::Status added = addTaxLine(connection, header->id, tax); !added)
        return added.error();
    if (const db::Status done = transaction.commit(); !done)
        return done.error();
    return TaxSlip{*header, slip.counterpart, tax};
}

db::Status cancelPurchaseTax(db::Connection &connection, const TaxSlip &slip)
{
    db::Transaction transaction(connection);
    if (const db::Status begun = transaction.begin(); !begun)
        return begun;
    const auto unchanged = connection.keys(
        u"SELECT ID FROM 入出庫マスター WHERE ID = ? AND 伝票番号 = ? AND 相手先ID = ? "
        "AND (SELECT COUNT(*) FROM 入出庫サブ WHERE 入出庫サブ.ID = 入出庫マスター.ID) = 1 "
        "AND (SELECT COUNT(*) FROM 入出庫サブ WHERE 入出庫サブ.ID = 入出庫マスター.ID AND 商品名 = '消費税' "
        "AND 金額 = ?) = 1"_s,
        {slip.header.id, slip.header.number, slip.supplier, slip.tax});
    if (!unchanged)
        return unchanged.error();
    if (unchanged->empty())
        return db::Error{
            u"伝票 %1 はほかのプログラムで変更または削除されたため、取り消しませんでした。"_s.arg(
                slip.header.number)};
    if (const db::Status deleted = deleteSlip(connection, slip.header.id); !deleted)
        return deleted;
    return transaction.commit();
}

QDate taxDate(const Period &period, const QDate &today)
{
    return today < period.from || today > period.to ? period.to : today;
}

} // namespace slips

#pragma once

#include "book/slip_store.h"
#include "support/fresh_shop.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// With a customer to sell to.
struct Shop : FreshShop
{
    Shop() { run(u"INSERT INTO 納品先 (納品先ID) VALUES (1)"_s); }
};

inline book::NewSlip saleTo(qint64 customer)
{
    book::NewSlip slip;
    slip.date = QDate(2026, 4, 1);
    slip.counterpart = customer;
    slip.employee = 1;
    slip.taxRate = 5;
    return slip;
}

inline qint64 savedSale(FreshShop &shop, qint64 customer = 1)
{
    const auto header = book::saveHeader(shop.connection, saleTo(customer));
    if (!header)
        qFatal("%s", qPrintable(header.error().text));
    return header->id;
}

inline void addLine(FreshShop &shop, qint64 id, double amount, const QString &product = u"りんご"_s)
{
    const auto added = book::addLine(shop.connection, id, {product, u"大"_s, 1, u"箱"_s, amount, amount});
    if (!added)
        qFatal("%s", qPrintable(added.error().text));
}

inline QStringList everything(FreshShop &shop)
{
    return shop.rows(
               u"SELECT ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 備考 FROM 入出庫マスター ORDER BY ID"_s) +
           shop.rows(
               u"SELECT 明細ID, ID, 商品名, 規格, 数量, 単位, 単価, 金額 FROM 入出庫サブ ORDER BY 明細ID"_s) +
           shop.rows(u"SELECT 納品先ID, 更新日 FROM 納品先 ORDER BY 納品先ID"_s);
}

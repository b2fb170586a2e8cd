#pragma once

#include "support/fresh_shop.h"

/// A book with slips of every kind about the first week of April 2026, entered in no order. Customer 1 and
/// supplier 1 are two different ones; 77 was deleted.
class DayBook : public FreshShop
{
public:
    DayBook()
    {
        using namespace Qt::StringLiterals;
        run(u"BEGIN"_s);
        run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名2) VALUES (1, '山田商店', '本店'), "
            "(2, '', '二階')"_s);
        run(u"INSERT INTO 仕入先 (仕入先ID, 仕入先名1) VALUES (1, '千曲農園')"_s);
        slip(1, u"2026-04-07"_s, u"O1"_s, 1, u"急ぎ"_s);
        line(1, u"みかん"_s, u"5kg"_s, 2.5, u"箱"_s, 1200, 3000);
        line(1, u"りんご"_s, {}, 3, u"個"_s, 100.5, 301);
        line(1, u"消費税"_s, {}, {}, {}, {}, 330);
        slip(2, u"2026-04-01"_s, u"Ｏ２"_s, 77);
        line(2, u"みかん"_s, {}, 1, u"箱"_s, 1200, 1200);
        slip(3, u"2026-04-01"_s, u"o-3"_s, 2);
        line(3, u"返品"_s, {}, -1, {}, 500, -500);
        slip(4, u"2026-03-31"_s, u"O4"_s, 1);
        line(4, u"前の日"_s, {}, 1, {}, 1, 1);
        slip(5, u"2026-04-08"_s, u"O5"_s, 1);
        line(5, u"次の日"_s, {}, 1, {}, 1, 1);
        slip(6, u"2026-04-02"_s, u"O6"_s, 1); // without a line
        slip(7, u"2026-04-02"_s, u"M7"_s, 1); // an estimate
        line(7, u"見積"_s, {}, 1, {}, 9, 9);
        money(8, u"R8"_s, 1, u"入　金"_s, 60000);
        money(9, u"P9"_s, 1, u"支払"_s, 20000);
        money(10, u"B10"_s, 1, u"繰越残高"_s, 7000);
        money(11, u"A11"_s, {}, u"繰越残高"_s, 8000);
        slip(12, u"2026-04-03"_s, u"I12"_s, 1, u"納品書 123\n2枚"_s);
        line(12, u"りんご"_s, u"20kg"_s, 10, u"箱"_s, 80, 800);
        slip(13, u"2026-04-04"_s, u"T13"_s, 1);
        line(13, u"りんご"_s, {}, 7, u"箱"_s, 80, 560);
        run(u"COMMIT"_s);
    }

    void slip(int id, const QVariant &date, const QString &number, const QVariant &counterpart,
              const QVariant &remark = {}, double rate = 10)
    {
        run(QStringLiteral(
                "INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 備考, 消費税率) VALUES (?, ?, "
                "?, ?, ?, ?)"),
            {id, date, number, counterpart, remark, rate});
    }

    void line(int slip, const QString &product, const QVariant &specification, const QVariant &quantity,
              const QVariant &unit, const QVariant &price, const QVariant &amount,
              const QVariant &taxClass = {}, const QVariant &rate = {})
    {
        run(QStringLiteral("INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額, 税区分, 税率) "
                           "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"),
            {slip, product, specification, quantity, unit, price, amount, taxClass, rate});
    }

private:
    void money(int id, const QString &number, const QVariant &counterpart, const QString &what, double amount)
    {
        slip(id, QStringLiteral("2026-04-02"), number, counterpart);
        line(id, what, {}, {}, {}, {}, amount);
    }
};

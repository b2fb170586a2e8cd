#pragma once

#include "support/fresh_shop.h"

/// A slip as "O 2026-04-01 1000 消費税=50 8:2000", of customer 1: sold goods, tax, goods at a rate of their
/// own, "8*:" a reduced one, "非:" not taxed. "-" for no date; "@5" at the end is the slip's rate, else 10,
/// "@" none; "内" before it: its prices include the tax.
inline void writeSlip(FreshShop &shop, int id, const QString &words, const QVariant &customer = 1)
{
    using namespace Qt::StringLiterals;
    QStringList parts = words.split(u' ');
    QVariant rate = 10;
    if (parts.last().startsWith(u'@')) {
        const QString typed = parts.takeLast().mid(1);
        rate = typed.isEmpty() ? QVariant() : typed;
    }
    const bool includes = parts.removeAll(u"内"_s) > 0;
    shop.run(
        u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率, 内税) VALUES (?, ?, ?, ?, ?, ?)"_s,
        {id, parts.at(1) == u"-" ? QVariant() : parts.at(1), parts.at(0) + QString::number(id), customer,
         rate, includes ? QVariant(1) : QVariant()});
    for (const QString &line : parts.mid(2)) {
        const QString own = line.contains(u':') ? line.section(u':', 0, 0) : QString();
        const QString rest = line.section(u':', -1);
        const bool isReduced = own.endsWith(u'*');
        const QVariant taxClass = own == u"非"    ? QVariant(3)
                                  : own.isEmpty() ? QVariant()
                                                  : QVariant(isReduced ? 1 : 0);
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額, 税区分, 税率) VALUES (?, ?, ?, ?, ?)"_s,
                 {id, rest.contains(u'=') ? rest.section(u'=', 0, 0) : u"りんご"_s,
                  rest.section(u'=', -1).toDouble(), taxClass,
                  own.isEmpty() ? QVariant() : QVariant(QString(own).remove(u'*').toDouble())});
    }
}

inline void writeCustomer(FreshShop &shop, int id, const QVariant &taxClass, const QVariant &closingDay = 0)
{
    using namespace Qt::StringLiterals;
    shop.run(
        u"INSERT INTO 納品先 (納品先ID, 納品先名1, フリガナ, 消費税区分, 締め日) VALUES (?, ?, ?, ?, ?)"_s,
        {id, u"山田商店%1"_s.arg(id), u"ﾔﾏﾀﾞ%1"_s.arg(100 - id), taxClass, closingDay});
}

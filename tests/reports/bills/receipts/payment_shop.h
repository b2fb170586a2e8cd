#pragma once

#include "support/fresh_shop.h"

#include <QFile>

/// A shop whose customers owe something on 2026-04-01: bills of the end of March, one of March 20th.
inline void makeDebtors(FreshShop &shop)
{
    using namespace Qt::StringLiterals;
    const struct
    {
        int id;
        QString name;
        QString reading;
        int closingDay;
        int owes;
    } debtors[] = {{1, u"株式会社　山田商店"_s, u"ﾔﾏﾀﾞｼﾖｳﾃﾝ"_s, 0, 11000},
                   {2, u"有限会社佐藤"_s, u"ｻﾄｳ"_s, 0, 5500},
                   {3, u"佐藤　花子"_s, u"ｻﾄｳﾊﾅｺ"_s, 0, 5500},
                   {4, u"高橋"_s, u"ﾀｶﾊｼ"_s, 0, 8000},
                   {5, u"髙橋"_s, u"ﾀｶﾊｼ"_s, 0, 3000},
                   {6, u"鈴木物産"_s, u"ｽｽﾞｷﾌﾞﾂｻﾝ"_s, 20, 20000}};
    shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (1, '木村')"_s);
    shop.workspace.panel.employeeId = 1;
    for (const auto &debtor : debtors) {
        shop.run(u"INSERT INTO 納品先 (納品先ID, コード, 納品先名1, フリガナ, 締め日, 消費税区分, 更新日) "
                 "VALUES (?, ?, ?, ?, ?, 0, '2026-03-10')"_s,
                 {debtor.id, u"C%1"_s.arg(debtor.id), debtor.name, debtor.reading, debtor.closingDay});
        shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 完了) "
                 "VALUES (?, '2026-03-10', ?, ?, 1, 10, 1)"_s,
                 {debtor.id, u"O%1"_s.arg(debtor.id), debtor.id});
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 数量, 単価, 金額) VALUES (?, 'りんご', 1, ?, ?)"_s,
                 {debtor.id, debtor.owes, debtor.owes});
    }
}

/// Writes \a content as it is. \return the file's name
inline QString fileOf(const FreshShop &shop, const QString &name, const QByteArray &content)
{
    QFile file(shop.path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s", qPrintable(file.errorString()));
    return file.fileName();
}

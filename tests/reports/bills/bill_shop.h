#pragma once

#include "support/fresh_shop.h"

/// A shop with customers whose bills close at the end of March 2026: 7 and 8 are taxed on the bill, 9 on
/// delivery, 10 bought nothing in March, 11 paid more than was owed, 12 closes on the 20th.
struct BillShop : FreshShop
{
    BillShop()
    {
        run(QStringLiteral("INSERT INTO 自社情報 (会社ID, 会社名1) VALUES (1, '山田茶舗')"));
        add(7, QStringLiteral("東京百貨店"), 1);
        add(8, QStringLiteral("駒形屋"), 1);
        add(9, QStringLiteral("蔵前/商店: \"本店\"\n"), 0);
        add(10, QStringLiteral("休業中"), 0);
        add(11, QStringLiteral("払いすぎ"), 0);
        add(12, QStringLiteral("二十日締め"), 0, 20);
        book(1, u'O', QStringLiteral("2026-03-02"), 7, 1'000);
        book(2, u'O', QStringLiteral("2026-03-31"), 8, 2'345);
        book(3, u'O', QStringLiteral("2026-03-15"), 9, 300);
        book(4, u'O', QStringLiteral("2026-02-15"), 10, 500);
        book(5, u'O', QStringLiteral("2026-02-15"), 11, 100);
        book(6, u'R', QStringLiteral("2026-03-15"), 11, 150);
        book(7, u'O', QStringLiteral("2026-03-05"), 12, 800);
        workspace.panel.billPaper = QStringLiteral("A4 無地");
        workspace.panel.employeeId = 1;
        workspace.panel.taxRate = 10;
    }

    void add(int id, const QString &name, int taxClass, int closingDay = 0)
    {
        run(QStringLiteral("INSERT INTO 納品先 (納品先ID, 納品先名1, 消費税区分, 締め日, 更新日) VALUES "
                           "(?, ?, ?, ?, '2026-01-01')"),
            {id, name, taxClass, closingDay});
    }

    void book(int id, char16_t letter, const QString &date, int customer, double amount)
    {
        run(QStringLiteral("INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率) VALUES "
                           "(?, ?, ?, ?, 10)"),
            {id, date, QChar(letter) + QString::number(id), customer});
        run(QStringLiteral("INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (?, 'ほうじ茶', ?)"),
            {id, amount});
    }

    /// All slips of the book.
    QStringList slips()
    {
        return rows(
            QStringLiteral("SELECT m.ID, 日付, 伝票番号, 相手先ID, 商品名, 金額 FROM 入出庫マスター m "
                           "LEFT JOIN 入出庫サブ s ON m.ID = s.ID ORDER BY m.ID, 明細ID"));
    }
    /// What was issued, to whom and for how much.
    QStringList issued()
    {
        return rows(QStringLiteral("SELECT 種類, 番号, 税込金額 FROM 発行控 ORDER BY 発行ID"));
    }
};

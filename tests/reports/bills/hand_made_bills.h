#pragma once

#include "reports/bills/bill_paper.h"

// Bills that are made by hand, for tests of their paper.

/// The bill of a shop of the everyday rate: so many rows of goods of 1,000 yen each.
inline reports::BillPaper paperOf(int rows)
{
    reports::BillPaper paper;
    paper.sender.name1 = QStringLiteral("有限会社山田茶舗");
    paper.sender.name2 = QStringLiteral("通信販売部");
    paper.sender.zip = QStringLiteral("4200001");
    paper.sender.address1 = QStringLiteral("静岡市葵区井宮町１２３");
    paper.sender.tel1 = QStringLiteral("054-123-4567");
    paper.sender.bank1 = QStringLiteral("駿河銀行　井宮支店　普通 1234567");
    paper.sender.bank2 = QStringLiteral("ゆうちょ銀行　〇八九店　当座 0031309");
    reports::Bill &bill = paper.bill;
    bill.customer.id = 7;
    bill.customer.name1 = QStringLiteral("株式会社東京百貨店");
    bill.customer.code = QStringLiteral("T-0042");
    bill.customer.zip = QStringLiteral("1500001");
    bill.customer.address1 = QStringLiteral("東京都渋谷区神宮前１－２－３");
    bill.customer.tel = QStringLiteral("03-1234-5678");
    bill.period = {QDate(2026, 10, 1), QDate(2026, 10, 31)};
    for (int i = 1; i <= rows; ++i) {
        reports::BillRow row;
        row.date = QStringLiteral("2026-10-%1").arg(1 + i % 28, 2, 10, QLatin1Char('0'));
        row.slip = 100 + i;
        row.number = QStringLiteral("O%1").arg(100 + i);
        row.name = QStringLiteral("品%1").arg(i);
        row.specification = QStringLiteral("100g");
        row.quantity = 2;
        row.price = 500;
        row.delivered = 1000;
        row.balance = 1000.0 * i;
        bill.rows.push_back(row);
    }
    bill.sums.sales = bill.sums.untaxed = 1000.0 * rows;
    return paper;
}

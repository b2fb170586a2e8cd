#pragma once

#include "reports/bills/receipts/payment_columns.h"

#include <QDate>

namespace reports
{

/// Money that came in, as a file tells it.
struct PaymentRow
{
    int line = 0; // of the file
    QDate date;
    double amount = 0; // yen
    QString payer{};   // as it is written; the text where there is no column for it
    QString text{};
    QString account{};
    /// What it is known by wherever it stands, whatever the file is called: its content, and which it is of
    /// those of the same content.
    QString key{};
    QString trouble{}; // why it cannot be taken; empty when it can
};

struct PaymentRows
{
    std::vector<PaymentRow> rows;
    int withoutAmount = 0; // money going out, opening balances, blank lines
};

/// The payments of \a table, read by \a columns. A row that has an amount and is none is there with its
/// trouble.
PaymentRows paymentRows(const PaymentTable &table, const PaymentColumns &columns);

/// The means of payment that a receipt of \a row bears, of those that the receipts screen offers.
QString meansOf(const PaymentRow &row, bool isCashBook);

} // namespace reports

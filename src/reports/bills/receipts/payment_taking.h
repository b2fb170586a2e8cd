#pragma once

#include "base/progress.h"
#include "book/slip_store.h"
#include "reports/bills/receipts/payment_matches.h"

#include <functional>

namespace reports
{

/// What all receipts of a file share.
struct TakingOptions
{
    qint64 employee = 0;
    QString infix; // of automatic numbers
    QString fileName;
    bool isCashBook = false;
    QDateTime now;
    std::function<base::Result<double>(const QDate &)> taxRate; // percent, of a slip of that day
};

struct TakenPayments
{
    QStringList numbers; // of the slips, in the order of the rows
    double total = 0;    // yen that came in
};

/// Writes a receipt for each ticked payment, as the receipts screen does, and keeps the row as taken: all of
/// them or none. Fails where one was taken meanwhile (`changed`), or a customer is gone.
base::Result<TakenPayments> takePayments(db::Connection &connection, const std::vector<PaymentMatch> &matches,
                                         const PayingCustomers &customers, const TakingOptions &options,
                                         const base::Progress &progress);

} // namespace reports

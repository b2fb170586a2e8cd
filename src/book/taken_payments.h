#pragma once

#include "base/result.h"
#include "book/slip_store.h"

#include <QDateTime>
#include <QHash>

#include <optional>
#include <vector>

// Rows of cash books and banks' files that receipts were written from (入金取込). A row counts as taken as
// long as its receipt is there.
namespace book
{

/// A row that a receipt was written from.
struct TakenPayment
{
    QString key;  // that tells the row wherever it stands
    QString file; // its name without the folder
    QDate date;
    QString payer;
    QString payerKey; // what spellings of the payer share
    double amount = 0;
    SavedHeader slip;
    QDateTime when;
};

/// Keeps \a taken, inside the transaction that wrote its receipt.
base::Status keepTaken(db::Connection &connection, const TakenPayment &taken);

/// Lets the row that the slip \a id was written from be taken once more: to be called where the slip is
/// deleted, whose key may be given again.
base::Status forgetTaken(db::Connection &connection, qint64 id);

/// The numbers of the receipts by the keys of their rows.
base::Result<QHash<QString, QString>> takenPayments(db::Connection &connection);

/// The number of the receipt of the row \a key; nothing where there is none.
base::Result<std::optional<QString>> receiptOf(db::Connection &connection, const QString &key);

/// Whose receipts bore which payer's key.
struct KnownPayer
{
    QString payerKey;
    qint64 customer = 0; // 納品先ID
};
base::Result<std::vector<KnownPayer>> knownPayers(db::Connection &connection);

} // namespace book

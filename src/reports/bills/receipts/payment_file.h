#pragma once

#include "base/progress.h"
#include "base/result.h"

#include <QDateTime>
#include <QStringList>

#include <vector>

// Files that tell of money received: a cash book, or what a bank writes of an account.
namespace reports
{

/// The table of such a file as it stands there, not yet judged.
struct PaymentTable
{
    struct Row
    {
        int line; // of the file, from 1
        QStringList cells;
    };
    QStringList columns; // their names in a database; a bank's file may have headings among its rows
    std::vector<Row> rows;
    qsizetype width = 0; // columns
    bool isCashBook = false;
};

/// A file as it was when it was read.
struct PaymentFile
{
    QString fileName;
    qint64 size = 0;
    QDateTime changed;
    PaymentTable table;
};

/// The table in \a fileName: 現金出納帳 of a database of this or of the old engine, or a bank's CSV. \a own
/// is the shop's own file, which is none. Fails for what is neither, with words that say what it is.
base::Result<PaymentFile> readPaymentFile(const QString &fileName, const QString &own,
                                          const base::Progress &progress);

/// Whether the file still is as it was read.
base::Status checkUnchanged(const PaymentFile &file);

} // namespace reports

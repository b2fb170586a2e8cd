#pragma once

#include "base/result.h"

#include <QString>

// The other programs of the product family, which the main window starts from the application folder.
namespace app
{

enum class Companion { Ledger, CashBook, BulkMail, PostalCodes };

/// Its executable in \a applicationFolder.
QString companionFile(const QString &applicationFolder, Companion companion);

bool isCompanionInstalled(const QString &applicationFolder, Companion companion);

/// What the ledger program is handed, in the order of its lines.
struct HandOver
{
    QString fileName;
    QString employeeId;
    QString supplierId;
    QString customerId;
    int textSize; // points
    QString taxRate;
    QString numberInfix;
};

/// Writes SendData.txt, one value a line in the system's code page, replacing the file.
base::Status writeHandOver(const QString &applicationFolder, const HandOver &values);

/// Starts the program; it runs on by itself.
base::Status startCompanion(const QString &applicationFolder, Companion companion);

} // namespace app

#pragma once

#include "base/result.h"

#include <QDate>
#include <QHash>

#include <vector>

namespace db
{
class Connection;
}

// Who was addressed (宛名印刷): a row for each letter that a queue took.
namespace shipping
{

/// Adds a row for each of \a customers (納品先ID), of which 0 is none. To be called inside the transaction of
/// the printing.
base::Status markAddressed(db::Connection &connection, const std::vector<qint64> &customers,
                           const QString &paper, const QDate &today);

/// The last day on which each customer was addressed; those who never were are not there.
base::Result<QHash<qint64, QDate>> lastAddressed(db::Connection &connection);

} // namespace shipping

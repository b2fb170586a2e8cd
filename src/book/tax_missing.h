#pragma once

#include "book/period.h"
#include "db/connection.h"

#include <QStringList>

namespace book
{

/// The numbers of the sales to \a customer in \a period, closed or not, that have no tax line, though their
/// prices do not include the tax, the oldest first. Slips of which nobody knows whether their prices include
/// it are not among them, nor are those whose tax would be nothing.
base::Result<QStringList> salesWithoutTax(db::Connection &connection, qint64 customer, const Period &period);

} // namespace book

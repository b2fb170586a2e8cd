#pragma once

#include "base/result.h"

#include <QDate>

namespace db
{
class Connection;
}

namespace app
{

/// What is to be told at the start of slips that were left open, and of those of the last two months before
/// \a today that were closed without the tax that is due on them; empty where there are none.
base::Result<QString> slipsToLookAt(db::Connection &connection, const QDate &today);

} // namespace app

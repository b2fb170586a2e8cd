#pragma once

#include "base/result.h"

#include <QDate>

namespace db
{
struct Salvage;
}

namespace app
{

/// What a salvage could not put into a table for certain, for a person to look through: a CSV file with a
/// dated name beside \a database. \return the sentence that says so; empty when there is no such row
base::Result<QString> listDoubtfulRows(const db::Salvage &salvage, const QString &database,
                                       const QDate &today);

} // namespace app

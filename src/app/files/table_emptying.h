#pragma once

#include "base/result.h"

#include <QStringList>

namespace db
{
class Connection;
}

namespace app
{

/// What can be emptied, in the order of the list: "すべて選択", "仕入先情報", …
QStringList emptyingItems();

/// What \a item means, with the number of rows of each, a line for each of its tables that has any.
base::Result<QString> rowsToDelete(db::Connection &connection, const QString &item);

/// Deletes the rows of what \a item means, all its tables in one transaction.
/// \return the sentence that says so
base::Result<QString> emptyTables(db::Connection &connection, const QString &item);

} // namespace app

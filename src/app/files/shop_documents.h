#pragma once

#include "base/progress.h"

#include <QString>

namespace db
{
class Connection;
}

// The documents that were issued stand beside the database, and go with each copy of it.
namespace app
{

/// Copies the documents of the open database from where those of \a source lie to the folder of its copy
/// \a target. \return what is to be told to the clerk; empty where nothing is. The copy of the database stays
/// in any case.
QString takeDocumentsAlong(db::Connection &connection, const QString &source, const QString &target,
                           const QString &applicationFolder, const base::Progress &progress);

/// The same into the backups. Documents that are lost already are no news at each exit.
QString backUpDocuments(db::Connection &connection, const QString &applicationFolder,
                        const base::Progress &progress);

} // namespace app

#pragma once

#include "base/progress.h"
#include "db/connection.h"

#include <QStringList>

// The documents of a shop go where a copy of its database goes.
namespace slips
{

/// What became of those that were to be copied.
struct CopiedDocuments
{
    int copied = 0;
    int lacking = 0; // that are whole in none of the folders
};

/// Copies the documents that the database names and that stand in none of \a to from the folders \a from into
/// the first of \a to, the newest first, each looked at on its way. What is there is never written again.
/// Stopped or failed, those that came across stay.
base::Result<CopiedDocuments> copyDocuments(db::Connection &connection, const QStringList &from,
                                            const QStringList &to, const base::Progress &progress);

} // namespace slips

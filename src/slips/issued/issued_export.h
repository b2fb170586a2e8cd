#pragma once

#include "base/progress.h"
#include "slips/issued/issued_search.h"

namespace slips
{

/// The name of \a row's file for other people: "2026-04-01_納品書_O1_山田商店.pdf", without what some file
/// system does not take, and no longer than all of them do.
QString exportName(const IssuedRow &row);

struct ExportedDocuments
{
    QString folder;                 // that was made for them
    int written = 0;                // files
    std::vector<IssuedRow> lacking; // that are in the index alone
};

/// Copies the documents \a keys out of \a folders into a new folder in \a target, with an index of them
/// (索引.csv). A document that is damaged or missing stands in the index, which says so. Failed or stopped,
/// it leaves nothing there.
base::Result<ExportedDocuments> exportDocuments(db::Connection &connection, const std::vector<qint64> &keys,
                                                const QStringList &folders, const QString &target,
                                                const QDate &today, const base::Progress &progress);

} // namespace slips

#pragma once

#include "base/progress.h"
#include "slips/issued/issued_search.h"

namespace slips
{

/// A document that is not as it was issued.
struct FaultyDocument
{
    IssuedRow row;
    DocumentState state = DocumentState::Missing;
};

/// What a check of the files found.
struct DocumentCheck
{
    qint64 checked = 0;
    int mended = 0; // damaged or missing, and put right from a backup
    std::vector<FaultyDocument> faulty;
    bool isStopped = false; // the rest was not looked at

    /// What the clerk is told; the rows of \a longest faults at most.
    [[nodiscard]] QString words(qsizetype longest) const;
};

/// Reads the file of each of \a keys and holds it against its hash. One that is damaged or missing in the
/// first of \a folders and whole in another one is put right.
base::Result<DocumentCheck> checkDocuments(db::Connection &connection, const std::vector<qint64> &keys,
                                           const QStringList &folders, const base::Progress &progress);

/// "ファイルがありません" or what else \a state is to be called.
QString nameOf(DocumentState state);

} // namespace slips

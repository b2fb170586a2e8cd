#pragma once

#include "db/progress.h"
#include "db/result.h"

namespace app
{
class Workspace;
}

namespace printing
{

struct Document;
struct Look;

/// \a document as PDF in the file \a fileName, with its fonts embedded. Written beside it and renamed over
/// it, so that an older file is lost only when the new one is complete.
db::Status writePdf(const Document &document, const Look &look, const QString &fileName,
                    const db::Progress &progress = db::unwatched);

/// As above, in the purpose's font.
db::Status writePdf(const app::Workspace &workspace, const Document &document, const QString &fileName);

} // namespace printing

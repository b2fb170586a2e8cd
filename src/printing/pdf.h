#pragma once

#include "base/progress.h"
#include "base/result.h"

#include <QByteArray>

namespace workspace
{
class Workspace;
}

namespace printing
{

struct Document;
struct JobSettings;
struct Look;

/// \a look as it has to be for the printer that \a settings are for.
Look lookOn(const JobSettings &settings, const Look &look);

/// \a document as PDF, with its fonts embedded. The same document and look give the same bytes, whenever and
/// however often they are drawn.
base::Result<QByteArray> pdfOf(const Document &document, const Look &look,
                               const base::Progress &progress = base::unwatched);

/// \a document as PDF in the file \a fileName, with its fonts embedded. Written beside it and renamed over
/// it, so that an older file is lost only when the new one is complete.
base::Status writePdf(const Document &document, const Look &look, const QString &fileName,
                      const base::Progress &progress = base::unwatched);

/// The finished \a pdf in the file \a fileName, in the same way.
base::Status writePdf(const QByteArray &pdf, const QString &fileName);

/// As above, in the purpose's font.
base::Status writePdf(const workspace::Workspace &workspace, const Document &document,
                      const QString &fileName);

} // namespace printing

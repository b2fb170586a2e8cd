#pragma once

#include "masters/rtf_reader.h"

namespace masters
{

/// The document in the file \a fileName, for the editor and for printing. The error names the file.
db::Result<RichText> readRtfFile(const QString &fileName);

/// Writes \a document to \a fileName. A file already there is replaced only when the new one is complete
/// and on the disk.
db::Status saveRtfFile(const RichTextDocument &document, const QString &fileName);

} // namespace masters

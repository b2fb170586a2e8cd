#pragma once

#include "masters/rich_text/rtf_reader.h"

namespace masters
{

/// The document in the file \a fileName, for the editor and for printing. The error names the file.
base::Result<RichText> readRtfFile(const QString &fileName);

/// Writes \a document to \a fileName. A file already there is replaced only when the new one is complete
/// and on the disk.
base::Status saveRtfFile(const RichTextDocument &document, const QString &fileName);

} // namespace masters

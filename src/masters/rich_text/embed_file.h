#pragma once

#include "masters/rich_text/rich_text_document.h"

#include "base/result.h"

namespace masters
{

/// Takes the file \a fileName into \a document: a picture as a picture, not wider than the line of a page,
/// anything else as an attachment. \return what a cursor inserts to show it
base::Result<QTextImageFormat> embedFile(RichTextDocument &document, const QString &fileName);

/// Writes the attached file to \a fileName.
base::Status saveAttachment(const Attachment &attachment, const QString &fileName);

} // namespace masters

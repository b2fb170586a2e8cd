#pragma once

#include "masters/rich_text/rich_text_document.h"

#include "base/result.h"

#include <QByteArray>

namespace masters
{

/// \a document as RTF 1.5 in code page 932: what readRtf() reads, and word processors too. Characters
/// without a place in the code page are written as \\u. Fails when the document goes beyond the limits of
/// the reader.
base::Result<QByteArray> writeRtf(const RichTextDocument &document);

} // namespace masters

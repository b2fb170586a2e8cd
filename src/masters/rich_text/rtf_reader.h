#pragma once

#include "masters/rich_text/rich_text_document.h"

#include "base/result.h"

#include <memory>

namespace masters
{

/// What an RTF file holds, as far as the company-name block knows it.
struct RichText
{
    std::unique_ptr<RichTextDocument> document;
    int picturesLeftOut = 0; // of a kind that cannot be shown, damaged or too large
};

/// Reads \a rtf: text, fonts, sizes, colours, bold, italic, underline, strike-through, alignment, pictures
/// and attached files. Everything else is passed over. Fails on what is no RTF, is cut off or damaged, or
/// goes beyond the limits; the file may be hostile.
base::Result<RichText> readRtf(QByteArrayView rtf);

} // namespace masters

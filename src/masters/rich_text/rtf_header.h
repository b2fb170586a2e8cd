#pragma once

#include "masters/rich_text/rtf_encoding.h"
#include "masters/rich_text/rtf_state.h"
#include "masters/rich_text/rtf_tables.h"
#include "masters/rich_text/text_look.h"

namespace masters
{

/// What an RTF file declares once and its text refers to by number.
struct RtfHeader
{
    int codePage = japaneseCodePage; // programs that do not tell it wrote in the system's own
    int defaultFont = 0;
    RtfFontTable fonts;
    RtfColourTable colours;

    /// The code page of bytes that stand in \a group.
    [[nodiscard]] int codePageIn(const RtfGroup &group) const;

    [[nodiscard]] TextLook lookOf(const RtfCharacters &characters) const;

private:
    [[nodiscard]] RtfFont fontOf(const RtfCharacters &characters) const;
};

} // namespace masters

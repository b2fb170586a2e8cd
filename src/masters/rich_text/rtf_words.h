#pragma once

#include "masters/rich_text/rtf_pictures.h"
#include "masters/rich_text/rtf_state.h"
#include "masters/rich_text/rtf_tables.h"

namespace masters
{

/// What a control word means to the reader. Only the member that belongs to the kind counts.
struct RtfWord
{
    enum class Kind {
        Unknown,
        Destination,
        Object,
        ObjectResult,
        Toggle,
        UnderlineOff,
        Alignment,
        ResetParagraph,
        ResetCharacters,
        EndOfParagraph,
        Character,
        Unicode,
        FallbackLength,
        CodePage,
        DefaultFont,
        Font,
        FontSize,
        FontCharset,
        Colour,
        ColourPart,
        PictureKind,
        PictureSize
    };
    Kind kind = Kind::Unknown;
    RtfDestination destination = RtfDestination::Skip;
    bool RtfCharacters::*toggle = nullptr;
    Qt::Alignment alignment = Qt::AlignLeft;
    char16_t character = 0;
    RtfColourTable::SetPart setPart = nullptr;
    RtfPicture::Kind pictureKind = RtfPicture::Kind::Sniffed;
    int RtfPicture::*pictureSize = nullptr;
};

/// The meaning of \\name; kind Unknown for the many words that the company-name block has no use for.
RtfWord rtfWord(QByteArrayView name);

} // namespace masters

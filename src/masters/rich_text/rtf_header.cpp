#include "masters/rich_text/rtf_header.h"

#include "masters/rich_text/rich_text_document.h"

namespace masters
{

int RtfHeader::codePageIn(const RtfGroup &group) const
{
    const bool inTable = group.destination == RtfDestination::FontTable;
    const RtfFont font = inTable ? fonts.current() : fontOf(group.characters);
    return codePageOf(font.charset, codePage);
}

TextLook RtfHeader::lookOf(const RtfCharacters &characters) const
{
    TextLook look;
    look.family = fontOf(characters).family;
    if (look.family.isEmpty())
        look.family = RichTextDocument::standardFont().family();
    look.points = characters.halfPoints / 2.0;
    look.bold = characters.bold;
    look.italic = characters.italic;
    look.underline = characters.underline;
    look.strikeOut = characters.strikeOut;
    look.colour = colours.colour(characters.colour);
    return look;
}

RtfFont RtfHeader::fontOf(const RtfCharacters &characters) const
{
    return fonts.font(characters.font >= 0 ? characters.font : defaultFont);
}

} // namespace masters

#pragma once

#include <Qt>

// What the RTF reader keeps in mind.
namespace masters
{

/// Where the text of a group goes.
enum class RtfDestination { Body, Skip, FontTable, ColourTable, Picture, ObjectData };

/// Formatting of characters; \plain sets it back to this.
struct RtfCharacters
{
    int font = -1; // -1: the file's default font
    int halfPoints = 24;
    int colour = 0;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    bool hidden = false;
};

/// What a group inherits from the one around it and gives up at its end.
struct RtfGroup
{
    RtfDestination destination = RtfDestination::Body;
    RtfCharacters characters;
    Qt::Alignment alignment = Qt::AlignLeft;
    int fallbackLength = 1; // \uc: characters after \u that stand in for it

    // These two belong to the group alone.
    bool opensDestination = false;
    bool isObject = false;
};

} // namespace masters

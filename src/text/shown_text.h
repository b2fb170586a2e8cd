#pragma once

#include <QString>

// How much of a text is shown. A cell or a box that lays out the megabytes of a damaged or hostile file
// stands still. All numbers are characters.
namespace text
{

/// Of a value in a cell, on paper or in a list.
inline constexpr qsizetype longestShown = 2'000;

/// What a box takes whole, to be edited; a line edit takes 32,767.
inline constexpr qsizetype longestEdited = 20'000;

/// The first characters of \a text, \a most or, where those would end within a pair that makes one
/// character, one less.
inline QString beginningOf(const QString &text, qsizetype most)
{
    if (text.size() <= most)
        return text;
    return text.first(most > 0 && text.at(most - 1).isHighSurrogate() ? most - 1 : most);
}

} // namespace text

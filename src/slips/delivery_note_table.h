#pragma once

#include "printing/text_fit.h"
#include "slips/slip_reader.h"

#include <array>
#include <vector>

namespace printing
{
class SheetWriter;
}

// The ruled table of the delivery note and how its lines fall on the sheets. Millimetres from the paper's
// top-left corner.
namespace slips
{

inline constexpr double noteLeft = 15;
inline constexpr double noteRight = 195;
inline constexpr double noteTableTop = 86;
inline constexpr double noteHeadingHeight = 7.5;
inline constexpr double noteRowHeight = 7.7;
inline constexpr int noteRows = 20;
inline constexpr double noteFootTop = noteTableTop + noteHeadingHeight + noteRows * noteRowHeight + 4;
inline constexpr double noteFootHeight = 22;

inline constexpr int noteColumns = 7; // the last one stays empty, for the customer's remarks

/// A slip's line as it is set: each cell's text, broken and sized; as many ruled rows as it needs.
struct NoteLine
{
    std::array<printing::FittedText, noteColumns> cells;
    int rows = 1;
};

using NotePage = std::vector<NoteLine>;

/// The lines of each sheet; a slip without lines has one empty sheet.
std::vector<NotePage> notePages(const std::vector<SlipLine> &lines);

/// Draws the headings, the rules and the lines of \a page.
void writeNoteTable(printing::SheetWriter &writer, const NotePage &page);

} // namespace slips

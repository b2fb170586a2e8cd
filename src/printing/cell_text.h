#pragma once

#include "printing/sheet_writer.h"

// Texts in the cells of lists. Millimetres.
namespace printing
{

/// The size of type in a cell that it fits into.
inline constexpr double cellPoints = 9;

/// How high a row has to be for \a text in a cell that is \a room wide; \a least where one line does, of
/// which figures never need more.
double cellHeight(const QString &text, double room, double least);

/// A cell's inside.
struct Cell
{
    double left = 0;
    double right = 0;
    double top = 0;
    double height = 0;
};

/// Writes \a text into the middle of \a cell's height. What is too long is made a little smaller or broken
/// into lines, and never leaves its cell; right-aligned numbers stay on one line.
void writeCell(SheetWriter &writer, const QString &text, const Cell &cell, Align align, bool bold = false);

} // namespace printing

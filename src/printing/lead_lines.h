#pragma once

// The blank lines with which a form begins that is printed as lines of text: fewer of them where the printer
// begins further down by itself, so that the text stands alike on every make.
namespace printing
{

/// How many there are on a printer that cannot reach the uppermost \a topMargin millimetres.
int leadLines(double topMargin);

/// How much lower such a form begins there than on the printers that it is designed for, millimetres.
double leadShift(double topMargin);

/// The height of one of them, millimetres: an empty line of four points.
double leadLineHeight();

} // namespace printing

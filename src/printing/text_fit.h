#pragma once

#include <QStringList>

// Room for text without asking a font: Japanese type of fixed width sets a full-width character as wide as
// its size and a half-width one half as wide. Widths and heights are millimetres, sizes points.
namespace printing
{

/// Width of \a text at \a points.
double textWidth(QStringView text, double points);

/// The largest size up to \a points, in steps of a twentieth, at which \a text fits into \a width.
double fittingPoints(QStringView text, double width, double points);

/// The same of a text that is \a natural long at \a points.
double fittingPoints(double natural, double room, double points);

struct FittedText
{
    QStringList lines;
    double points;
};

/// \a text on one line if \a minPoints allow it, else broken into as many lines as it needs at that size.
/// Nothing of the text is lost.
FittedText fitText(QStringView text, double width, double points, double minPoints);

/// Where a line that is too long is broken: anywhere, or not within a house number as long as that fits.
enum class Breaks { Anywhere, BesideFigures };

/// \a text, which may hold line breaks and of which 5,000 characters are printed, broken and made smaller
/// until it fits into the block. Lines stand \a leading times their size apart.
FittedText fitBlock(QStringView text, double width, double height, double points, double leading,
                    Breaks breaks = Breaks::Anywhere);

/// How many lines fitBlock() breaks \a text into at \a points.
qsizetype linesInBlock(QStringView text, double width, double points, Breaks breaks);

/// \a text, or its first 5,000 characters, for one line of print: line breaks, tabs and other control
/// characters become blanks.
QString singleLine(QStringView text);

} // namespace printing

#include "printing/cell_text.h"

#include "printing/text_fit.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr double slack = 0.6;       // of a row over its lines
constexpr double smallPoints = 7.5; // below it, text is rather broken into lines
constexpr double leastPoints = 7;   // nobody reads smaller type at a counter: the row grows
constexpr qsizetype mostLines = 12;
constexpr double leading = 1.1;

// A telephone number, a postal code, a day.
bool isFigure(const QString &line)
{
    return std::any_of(line.begin(), line.end(), [](QChar c) { return c.isDigit(); }) &&
           std::all_of(line.begin(), line.end(),
                       [](QChar c) { return c.isDigit() || u"-()+/.,: "_s.contains(c); });
}

FittedText setText(const QString &text, double room, double height, Align align)
{
    const QString line = singleLine(text);
    if (align == Align::Right)
        return {{line}, fittingPoints(line, room, cellPoints)};
    if (isFigure(line)) // set narrower, if need be
        return {{line}, std::max(leastPoints, fittingPoints(line, room, cellPoints))};
    const bool broken = text.contains(u'\n');
    const double fitting = broken ? 0 : fittingPoints(line, room, cellPoints);
    if (fitting >= smallPoints)
        return {{line}, fitting};
    return fitBlock(text, room, height, broken ? cellPoints : smallPoints, leading, Breaks::BesideFigures);
}

} // namespace

double cellHeight(const QString &text, double room, double least)
{
    const QString line = singleLine(text);
    if (isFigure(line) || (!text.contains(u'\n') && fittingPoints(line, room, cellPoints) >= smallPoints))
        return least;
    const qsizetype lines = std::min(linesInBlock(text, room, leastPoints, Breaks::BesideFigures), mostLines);
    return std::max(least,
                    static_cast<double>(lines) * millimetresFromPoints(leastPoints) * leading + slack + 0.01);
}

void writeCell(SheetWriter &writer, const QString &text, const Cell &cell, Align align, bool bold)
{
    if (text.isEmpty())
        return;
    const double room = cell.right - cell.left;
    const FittedText set = setText(text, room, cell.height - slack, align);
    const double anchor = cell.left + shareBefore(align) * room;
    const double step = millimetresFromPoints(set.points) * leading;
    const double block = static_cast<double>(set.lines.size() - 1) * step + millimetresFromPoints(set.points);
    double top = cell.top + (cell.height - block) / 2;
    for (const QString &line : set.lines) {
        writer.text(anchor, top, line, set.points, align, room, bold);
        top += step;
    }
}

} // namespace printing

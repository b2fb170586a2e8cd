#include "printing/lead_lines.h"

#include "printing/sheet.h"

#include <cmath>

namespace printing
{

namespace
{

constexpr int usualLines = 10;
constexpr double designedFor = 6.35; // millimetres, a quarter of an inch: what a dot-matrix printer leaves

// The twips of a millimetre are rounded up to 57 before they divide: so it always was, and the bounds of the
// rule below are meant for it.
int wholeMillimetres(double topMargin)
{
    constexpr int twips = 57;
    return static_cast<int>(std::nearbyint(topMargin * twipsPerInch / 25.4)) / twips;
}

double beginning(double topMargin) { return topMargin + leadLines(topMargin) * leadLineHeight(); }

} // namespace

int leadLines(double topMargin)
{
    const int margin = wholeMillimetres(topMargin);
    if (margin < 4)
        return 10;
    if (margin < 5)
        return 9;
    return margin < 6 ? 8 : usualLines;
}

double leadShift(double topMargin) { return beginning(topMargin) - beginning(designedFor); }

double leadLineHeight() { return millimetresFromPoints(4); }

} // namespace printing

#pragma once

#include <QString>

#include <vector>

// What is printed, before it meets a printer: a layout is a pure function from data to sheets. Positions are
// twips, 1440 to the inch; layouts are designed in millimetres and converted with 56.7 twips to each.
namespace printing
{

inline constexpr double twipsPerInch = 1440.0;
inline constexpr double twipsPerMillimetre = 56.7;
inline constexpr double twipsPerPoint = 20.0;

constexpr double twipsFromMillimetres(double millimetres) { return millimetres * twipsPerMillimetre; }

/// The height of type of so many points.
constexpr double millimetresFromPoints(double points) { return points * 25.4 / 72; }

enum class Align { Left, Centre, Right };

/// The part of a text's length that lies before the point at which it is set.
constexpr double shareBefore(Align align)
{
    return align == Align::Left ? 0.0 : align == Align::Centre ? 0.5 : 1.0;
}

/// One line of text. \a x is its left edge, centre or right edge; \a y the top of its em square. Of vertical
/// text \a x is the middle of the column, and \a y its top, middle or bottom.
struct TextItem
{
    double x = 0;
    double y = 0;
    QString text;
    double points = 10;
    Align align = Align::Left;
    bool bold = false;
    double room = 0; // twips; type that comes out longer is squeezed into it. 0: as it falls
    bool vertical = false;
    bool pairedDigits = false; // of vertical text: two digits stand side by side
    QString face{};            // empty: the document's own
};

struct Line
{
    double x1 = 0;
    double y1 = 0;
    double x2 = 0;
    double y2 = 0;
    double width = 0; // twips
    int grey = 0;     // from 0 (black) to 255
};

/// A rectangle; the grey of its inside from 0 (black) to 255 (white, that is left open).
struct Box
{
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    double lineWidth = 0; // twips; 0: no outline
    int grey = 255;
    bool vermilion = false; // its outline: the colour that readers of postal codes pass over
};

/// Room for a block of rich text, which the renderer scales down until it fits.
struct RichTextSlot
{
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    QString name; // under which the document to be printed holds the text
};

/// Where the twips are counted from.
enum class Origin {
    PrintableArea, // its top-left corner, which the printer's make decides: pre-printed forms
    PaperEdge,     // the paper's own corner: plain paper comes out alike on every printer
    LeadLines,     // it too, as far as leadShift() does not move the sheet down: forms printed line by line
};

struct Sheet
{
    // The paper as it is fed, millimetres. A continuous form that is wider than high is fed that way and
    // never turned: the printer would take the wrong length for it.
    double paperWidth = 210;
    double paperHeight = 297;
    bool turned = false; // it is read across its feed, with the long side on top
    // Turned, it is drawn so for a printer: clockwise, its top at the right edge. Else the printer turns it,
    // one way or the other.
    bool drawnClockwise = false;
    QString bin; // that it is fed from, as the system names it; empty: the printer's own choice
    Origin origin = Origin::PrintableArea;
    std::vector<Box> boxes; // drawn first, so that their grey lies under the text
    std::vector<Line> lines;
    std::vector<TextItem> texts;
    std::vector<RichTextSlot> richTexts;

    [[nodiscard]] double readWidth() const { return turned ? paperHeight : paperWidth; }
    [[nodiscard]] double readHeight() const { return turned ? paperWidth : paperHeight; }

    /// Cut paper that is read with this width and height: it is fed upright.
    void setCutPaper(double width, double height)
    {
        turned = width > height;
        paperWidth = turned ? height : width;
        paperHeight = turned ? width : height;
    }
};

} // namespace printing

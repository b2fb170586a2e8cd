#pragma once

#include "printing/sheet.h"

#include <QStringList>

#include <optional>
#include <vector>

// A form as a layout file describes it: where each named value stands on the paper. Plain values, so that an
// editor can change and save them. Measures are millimetres, sizes of type points.
namespace printing
{

/// The newest layout format that is understood.
inline constexpr int formFormat = 1;

/// Type is between these sizes, points.
inline constexpr double smallestFormType = 4;
inline constexpr double largestFormType = 72;

/// The sheets of a document that bear an element.
enum class OnSheets { Every, First, Further, Last, BeforeLast };

/// The paper as it is fed, and how it is read.
struct FormPaper
{
    double width = 210;
    double height = 297;
    bool turned = false; // it is read with its long side across, turned by 90 degrees
    QString source;      // the bin; empty: the printer's own choice

    [[nodiscard]] double readWidth() const { return turned ? height : width; }
    [[nodiscard]] double readHeight() const { return turned ? width : height; }
};

/// The named offsets that move an element; those of a direction add up.
struct FormShift
{
    std::optional<QStringList> right; // empty: as the whole form
    std::optional<QStringList> down;
};

/// What every element has.
struct FormPlace
{
    double x = 0;
    double y = 0;
    OnSheets sheets = OnSheets::Every;
    QString when; // an item; the element is left out where it has no value
    FormShift shift;
};

/// What is written: an item's value or a fixed text.
struct FormSource
{
    QString item{};
    QString text{};
    QString format{}; // of a number or a date; empty: the usual one
    QString before{}; // texts around the value, left out with it
    QString after{};
    bool always = false; // but written even where there is no value
};

struct FormType
{
    double points = 10;
    bool bold = false;
    QString font; // the face; empty: the document's own
};

/// What becomes of a text that is wider than its room.
enum class FormFit {
    Squeeze, // its characters get narrower
    Shrink,  // its type gets smaller, down to the text's smallest, and is squeezed then
    Wrap,    // broken into lines, and smaller until they fit into the height
};

struct FormText
{
    FormPlace
        place; // x: left edge, middle or right edge as align tells; of vertical text the column's middle
    FormSource source;
    FormType type;
    Align align = Align::Left;
    FormFit fit = FormFit::Squeeze;
    double smallest = 1;  // points that it shrinks to
    double width = 0;     // 0: no bound; of vertical text its length
    double height = 0;    // of a wrapped text, or to stand in the middle of
    double leading = 1.3; // of wrapped lines, times their size
    bool middle = false;  // in the middle of the height, not at its top
    bool vertical = false;
    bool pairedDigits = false; // in vertical text: two digits side by side
    FormSource beside;         // the width of this text is kept free at the right end
    double besidePoints = 0;   // 0: nothing is
};

struct FormBox
{
    FormPlace place;
    double width = 0;
    double height = 0;
    double line = 0;        // width of the outline; 0: none
    int grey = 255;         // of the inside, from 0 (black) to 255
    bool vermilion = false; // the outline
};

struct FormRule
{
    FormPlace place;
    double toX = 0;
    double toY = 0;
    double line = 0.15;
    int grey = 0;
};

/// Room for a block of rich text, drawn where its item has a value.
struct FormSlot
{
    FormPlace place;
    QString item;
    double width = 0;
    double height = 0;
};

struct FormStackLine
{
    FormSource source;
    QString when;
    FormType type;
    double gap = 0;  // kept free above it
    double from = 0; // it stands no higher than this
    double rule = 0; // width of a rule in place of a text
    double left = 0; // of the rule
    double right = 0;
};

/// Lines of text one under the other: what is empty takes no room, what is too long gets smaller, then
/// breaks.
struct FormStack
{
    FormPlace place;
    double width = 0;
    double leading = 1.38;
    double smallest = 7;     // points; below this a line is broken rather than made smaller
    double textHeight = 5.5; // the most that one text takes, however long it is
    std::vector<FormStackLine> lines;
};

/// One side of a small table.
struct FormTableCell
{
    double x = 0;
    double width = 0;
    double height = 0; // of wrapped text
    double leading = 1.3;
    double points = 10;
    Align align = Align::Left;
    FormFit fit = FormFit::Squeeze;
};

struct FormTableRow
{
    QString label;
    FormSource source;
    std::optional<double> points; // of the value
    bool bold = false;
};

/// A small table of labels and values. Rows without a value are left out, and the rest moves up.
struct FormTable
{
    FormPlace place;
    double width = 0;
    double pitch = 6;
    std::optional<double> top; // of the text below the row's top; empty: in the row's middle
    FormTableCell label;
    FormTableCell value;
    double frame = 0;              // line widths; 0: none
    std::optional<double> divider; // x of the line between labels and values
    int labelGrey = 255;           // of the ground left of it
    double rule = 0;               // between the rows
    int ruleGrey = 0;
    bool ruleLast = false; // under the last row too
    std::vector<FormTableRow> rows;
};

struct FormColumn
{
    FormSource source; // no item: it stays empty, for handwriting
    QString heading;
    double x = 0;
    double width = 0; // 0: as wide as it comes
    Align align = Align::Left;
    FormFit fit = FormFit::Wrap;
};

/// Where the repeated rows stand on a sheet.
struct FormRows
{
    double y = 0; // of the first row's top
    int count = 0;
};

/// The repeated rows with their columns.
struct FormBody
{
    FormRows first;
    std::optional<FormRows> further; // on the sheets after the first; empty: as there
    double pitch = 8;
    FormType type;
    double smallest = 8;  // points; a smaller text is broken into lines instead
    double leading = 1.2; // of its lines
    int linesInRow = 2;   // of the smallest type; a longer text takes further rows
    FormShift shift;
    std::vector<FormColumn> columns;

    // Ruled on plain paper; nothing of it on a pre-printed form.
    double left = 0;
    double right = 0;
    double headingHeight = 0; // 0: no headings
    double headingPoints = 9;
    int headingGrey = 255;
    double frame = 0; // line widths; 0: none
    double divider = 0;
    std::vector<double> dividers; // x of the lines between the columns
    double rule = 0;
    int ruleGrey = 0;

    [[nodiscard]] const FormRows &rowsOn(std::size_t sheet) const
    {
        return sheet > 0 && further ? *further : first;
    }
};

/// What ends a sheet that another one follows.
struct FormCarry
{
    FormText text;
    std::optional<FormText> amount;
    bool takesRow = false; // the last row of the body, which gives their height
};

/// Elements that are moved together: those of a whole form, or of a part of it that has offsets of its own,
/// as the receipt below a perforation.
struct FormPart
{
    QString name;
    double x = 0; // of its upper left corner on the paper, from which its elements are measured
    double y = 0;
    QStringList shiftRight; // names of the offsets that move everything
    QStringList shiftDown;
    std::vector<FormBox> boxes;
    std::vector<FormRule> rules;
    std::vector<FormStack> stacks;
    std::vector<FormText> texts;
    std::vector<FormTable> tables;
    std::vector<FormSlot> richTexts;
    std::optional<FormBody> body;
    std::optional<FormCarry> carry;
};

/// A form: its own elements, and further parts of the same paper. All bodies show the same rows.
struct Form : FormPart
{
    FormPaper paper;
    Origin origin = Origin::PaperEdge;
    std::vector<FormPart> parts;
};

} // namespace printing

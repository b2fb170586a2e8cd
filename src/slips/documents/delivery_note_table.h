#pragma once

#include "book/slip_reader.h"
#include "printing/sheet.h"
#include "printing/text_fit.h"

#include <array>
#include <span>
#include <vector>

namespace printing
{
class SheetWriter;
}

// The ruled table of the slips printed for customers and how their lines fall on the sheets. Millimetres from
// the paper's top-left corner.
namespace slips
{

inline constexpr double noteLeft = 15;
inline constexpr double noteRight = 195;
inline constexpr double noteHeadingHeight = 7.5;
inline constexpr double noteRowHeight = 7.7;

struct NoteColumn
{
    const char16_t *heading; // empty: it stands under the heading of the column before it
    double width;
    printing::Align align;
};

/// A table's place on its sheet. The columns are, as far as there are any: product, specification, quantity,
/// unit, price, amount, and one that stays empty.
struct NoteTable
{
    std::span<const NoteColumn> columns;
    double top;
    int rows;

    [[nodiscard]] constexpr double bottom() const { return top + noteHeadingHeight + rows * noteRowHeight; }
};

inline constexpr std::array<NoteColumn, 7> deliveryNoteColumns{{
    {u"商品名", 65, printing::Align::Left},
    {u"規格", 28, printing::Align::Left},
    {u"数量", 18, printing::Align::Right},
    {u"", 11, printing::Align::Centre}, // unit
    {u"単価", 20, printing::Align::Right},
    {u"金額", 24, printing::Align::Right},
    {u"備考", 14, printing::Align::Left}, // for the customer's remarks
}};

/// The delivery note's table, and the block below it.
inline constexpr int noteRows = 20;
inline constexpr NoteTable noteTable{deliveryNoteColumns, 86, noteRows};
inline constexpr double noteFootTop = noteTable.bottom() + 4;
inline constexpr double noteFootHeight = 22;

/// A slip's line as it is set: each cell's text, broken and sized; as many ruled rows as it needs.
struct NoteLine
{
    std::vector<printing::FittedText> cells;
    int rows = 1;
};

using NotePage = std::vector<NoteLine>;

/// The lines of each sheet; a slip without lines has one empty sheet. \a further: the table of the sheets
/// after the first, of the same columns and with no fewer rows.
std::vector<NotePage> notePages(const std::vector<book::SlipLine> &lines, const NoteTable &first,
                                const NoteTable &further);

/// Draws the headings, the rules and the lines of \a page.
void writeNoteTable(printing::SheetWriter &writer, const NoteTable &table, const NotePage &page);

} // namespace slips

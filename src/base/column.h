#pragma once

#include <QString>

namespace base
{

/// What the values of a column are, and so how they are shown. text::formatValue() shows them,
/// tables::cellOf() writes them to files.
enum class Format {
    Text,
    Number,   // keys and counts: as it is edited
    Date,     // yyyy-MM-dd in the file, shown as yyyy/MM/dd
    Amount,   // whole yen: "1,234"
    Quantity, // and unit prices: "1,234", "2.50"
};

/// Whether a column's values stand right-aligned, under each other's digits.
constexpr bool isNumber(Format format)
{
    return format == Format::Number || format == Format::Amount || format == Format::Quantity;
}

/// A column of whatever is shown, printed or written row by row; each of the three takes the width it needs.
struct Column
{
    QString heading;
    Format format = Format::Text;
    int characters = 10;     // width on the screen and in a spreadsheet, in half-width characters
    double millimetres = 20; // width on paper, with the blank beside the text
    bool stretches = false;  // takes its share of what the other columns leave of a page or a window
    bool summed = false;     // by subtotals and totals
    bool centred = false;    // on paper
};

} // namespace base

#include "slips/delivery_note_table.h"

#include "printing/sheet_writer.h"
#include "text/numbers.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using printing::Align;
using printing::millimetresFromPoints;
using printing::SheetWriter;

namespace slips
{

namespace
{

struct ColumnForm
{
    const char16_t *heading;
    double width;
    Align align;
};

constexpr std::array<ColumnForm, noteColumns> columns{{
    {u"商品名", 65, Align::Left},
    {u"規格", 28, Align::Left},
    {u"数量", 18, Align::Right},
    {u"", 11, Align::Centre}, // unit
    {u"単価", 20, Align::Right},
    {u"金額", 24, Align::Right},
    {u"備考", 14, Align::Left},
}};

constexpr double padding = 1.2;
constexpr double points = 9.5;
constexpr double smallPoints = 8; // of text that does not fit on one line
constexpr double leading = 1.2;
constexpr int smallLinesInRow = 2;
constexpr double thin = 0.15;
constexpr double thick = 0.4;
constexpr int ruleGrey = 130;
constexpr double tableHeight = noteHeadingHeight + noteRows * noteRowHeight;

// The unit stands beside its quantity under one heading.
bool isUnit(std::size_t column) { return columns[column].heading[0] == u'\0'; }

double room(std::size_t column) { return columns[column].width - 2 * padding; }

QString numberText(const std::optional<double> &number)
{
    return number ? text::formatQuantity(*number) : QString();
}

int rowsNeeded(const printing::FittedText &cell)
{
    return (static_cast<int>(cell.lines.size()) + smallLinesInRow - 1) / smallLinesInRow;
}

NoteLine setLine(const SlipLine &line)
{
    const std::array<QString, noteColumns> texts{
        printing::singleLine(line.product),
        printing::singleLine(line.specification),
        numberText(line.quantity),
        printing::singleLine(line.unit),
        numberText(line.price),
        text::formatAmount(line.amount),
    };
    NoteLine set;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        // A number is never broken: it gets as small as it must.
        const double least = columns[column].align == Align::Right ? 0 : smallPoints;
        set.cells[column] = printing::fitText(texts[column], room(column), points, least);
        if (rowsNeeded(set.cells[column]) > noteRows)
            set.cells[column] = printing::fitBlock(texts[column], room(column), noteRows * noteRowHeight,
                                                   smallPoints, leading);
        set.rows = std::max(set.rows, std::min(rowsNeeded(set.cells[column]), noteRows));
    }
    return set;
}

void writeCell(SheetWriter &writer, const printing::FittedText &cell, std::size_t column, double x, double y,
               double height)
{
    const ColumnForm &form = columns[column];
    const double anchor = form.align == Align::Left     ? x + padding
                          : form.align == Align::Centre ? x + form.width / 2
                                                        : x + form.width - padding;
    const double step = millimetresFromPoints(cell.points) * leading;
    const double block =
        static_cast<double>(cell.lines.size() - 1) * step + millimetresFromPoints(cell.points);
    double top = y + (height - block) / 2;
    for (const QString &line : cell.lines) {
        writer.text(anchor, top, line, cell.points, form.align, room(column));
        top += step;
    }
}

void writeRules(SheetWriter &writer, const std::vector<double> &between)
{
    const double bottom = noteTableTop + tableHeight;
    writer.box(noteLeft, noteTableTop, noteRight - noteLeft, noteHeadingHeight, 0, 236);
    writer.box(noteLeft, noteTableTop, noteRight - noteLeft, tableHeight, thick);
    for (const double y : between)
        writer.line(noteLeft, y, noteRight, y, thin, ruleGrey);
    double x = noteLeft;
    for (std::size_t column = 0; column + 1 < columns.size(); ++column) {
        x += columns[column].width;
        if (!isUnit(column + 1))
            writer.line(x, noteTableTop, x, bottom, thin);
    }
}

void writeHeadings(SheetWriter &writer)
{
    double x = noteLeft;
    const double y = noteTableTop + (noteHeadingHeight - millimetresFromPoints(9)) / 2;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        const ColumnForm &form = columns[column];
        const bool beforeUnit = column + 1 < columns.size() && isUnit(column + 1);
        const double width = form.width + (beforeUnit ? columns[column + 1].width : 0);
        writer.text(x + width / 2, y, QString::fromUtf16(form.heading), 9, Align::Centre);
        x += form.width;
    }
}

} // namespace

std::vector<NotePage> notePages(const std::vector<SlipLine> &lines)
{
    std::vector<NotePage> pages(1);
    int used = 0;
    for (const SlipLine &line : lines) {
        NoteLine set = setLine(line);
        if (used + set.rows > noteRows) {
            pages.emplace_back();
            used = 0;
        }
        used += set.rows;
        pages.back().push_back(std::move(set));
    }
    return pages;
}

void writeNoteTable(SheetWriter &writer, const NotePage &page)
{
    std::vector<double> rules{noteTableTop + noteHeadingHeight};
    writeHeadings(writer);
    double y = rules.front();
    int used = 0;
    for (const NoteLine &line : page) {
        const double height = line.rows * noteRowHeight;
        double x = noteLeft;
        for (std::size_t column = 0; column < columns.size(); ++column) {
            writeCell(writer, line.cells[column], column, x, y, height);
            x += columns[column].width;
        }
        y += height;
        used += line.rows;
        if (used < noteRows)
            rules.push_back(y);
    }
    for (; used + 1 < noteRows; ++used)
        rules.push_back(y += noteRowHeight);
    writeRules(writer, rules);
}

} // namespace slips

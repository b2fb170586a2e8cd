#include "slips/documents/delivery_note_table.h"

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

constexpr double padding = 1.2;
constexpr double points = 9.5;
constexpr double smallPoints = 8; // of text that does not fit on one line
constexpr double leading = 1.2;
constexpr int smallLinesInRow = 2;
constexpr double thin = 0.15;
constexpr double thick = 0.4;
constexpr int ruleGrey = 130;

// A unit may stand beside its quantity under one heading.
bool sharesHeading(const NoteColumn &column) { return column.heading[0] == u'\0'; }

double room(const NoteColumn &column) { return column.width - 2 * padding; }

QString numberText(const std::optional<double> &number)
{
    return number ? text::formatQuantity(*number) : QString();
}

int rowsNeeded(const printing::FittedText &cell)
{
    return (static_cast<int>(cell.lines.size()) + smallLinesInRow - 1) / smallLinesInRow;
}

NoteLine setLine(const book::SlipLine &line, const NoteTable &table)
{
    const std::array<QString, 7> texts{
        printing::singleLine(line.product),
        printing::singleLine(line.specification),
        numberText(line.quantity),
        printing::singleLine(line.unit),
        numberText(line.price),
        text::formatAmount(line.amount),
    };
    NoteLine set;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const NoteColumn &column = table.columns[i];
        // A number is never broken: it gets as small as it must.
        const double least = column.align == Align::Right ? 0 : smallPoints;
        printing::FittedText cell = printing::fitText(texts.at(i), room(column), points, least);
        if (rowsNeeded(cell) > table.rows)
            cell = printing::fitBlock(texts.at(i), room(column), table.rows * noteRowHeight, smallPoints,
                                      leading);
        set.rows = std::max(set.rows, std::min(rowsNeeded(cell), table.rows));
        set.cells.push_back(std::move(cell));
    }
    return set;
}

void writeCell(SheetWriter &writer, const printing::FittedText &cell, const NoteColumn &form, double x,
               double y, double height)
{
    const double anchor = form.align == Align::Left     ? x + padding
                          : form.align == Align::Centre ? x + form.width / 2
                                                        : x + form.width - padding;
    const double step = millimetresFromPoints(cell.points) * leading;
    const double block =
        static_cast<double>(cell.lines.size() - 1) * step + millimetresFromPoints(cell.points);
    double top = y + (height - block) / 2;
    for (const QString &line : cell.lines) {
        writer.text(anchor, top, line, cell.points, form.align, room(form));
        top += step;
    }
}

void writeRules(SheetWriter &writer, const NoteTable &table, const std::vector<double> &between)
{
    writer.box(noteLeft, table.top, noteRight - noteLeft, noteHeadingHeight, 0, 236);
    writer.box(noteLeft, table.top, noteRight - noteLeft, table.bottom() - table.top, thick);
    for (const double y : between)
        writer.line(noteLeft, y, noteRight, y, thin, ruleGrey);
    double x = noteLeft;
    for (std::size_t column = 0; column + 1 < table.columns.size(); ++column) {
        x += table.columns[column].width;
        if (!sharesHeading(table.columns[column + 1]))
            writer.line(x, table.top, x, table.bottom(), thin);
    }
}

void writeHeadings(SheetWriter &writer, const NoteTable &table)
{
    double x = noteLeft;
    const double y = table.top + (noteHeadingHeight - millimetresFromPoints(9)) / 2;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        const NoteColumn &form = table.columns[column];
        const bool beforeUnit = column + 1 < table.columns.size() && sharesHeading(table.columns[column + 1]);
        const double width = form.width + (beforeUnit ? table.columns[column + 1].width : 0);
        writer.text(x + width / 2, y, QString::fromUtf16(form.heading), 9, Align::Centre);
        x += form.width;
    }
}

} // namespace

std::vector<NotePage> notePages(const std::vector<book::SlipLine> &lines, const NoteTable &first,
                                const NoteTable &further)
{
    std::vector<NotePage> pages(1);
    int used = 0;
    for (const book::SlipLine &line : lines) {
        NoteLine set = setLine(line, first);
        if (used + set.rows > (pages.size() == 1 ? first : further).rows) {
            pages.emplace_back();
            used = 0;
        }
        used += set.rows;
        pages.back().push_back(std::move(set));
    }
    return pages;
}

void writeNoteTable(SheetWriter &writer, const NoteTable &table, const NotePage &page)
{
    std::vector<double> rules{table.top + noteHeadingHeight};
    writeHeadings(writer, table);
    double y = rules.front();
    int used = 0;
    for (const NoteLine &line : page) {
        const double height = line.rows * noteRowHeight;
        double x = noteLeft;
        for (std::size_t column = 0; column < table.columns.size(); ++column) {
            writeCell(writer, line.cells[column], table.columns[column], x, y, height);
            x += table.columns[column].width;
        }
        y += height;
        used += line.rows;
        if (used < table.rows)
            rules.push_back(y);
    }
    for (; used + 1 < table.rows; ++used)
        rules.push_back(y += noteRowHeight);
    writeRules(writer, table, rules);
}

} // namespace slips

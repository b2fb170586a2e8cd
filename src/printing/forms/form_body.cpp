#include "printing/forms/form_body.h"

#include <algorithm>

namespace printing
{

namespace
{

constexpr double smallestNumber = 1; // points; what is only made smaller gets as small as it must

int rowsNeeded(const FittedText &cell, int linesInRow)
{
    return (static_cast<int>(cell.lines.size()) + linesInRow - 1) / linesInRow;
}

FittedText setCell(const FormBody &body, const FormColumn &column, const QString &text, int mostRows)
{
    if (column.width <= 0 || column.fit == FormFit::Squeeze)
        return {{text}, body.type.points};
    if (column.fit == FormFit::Shrink)
        return fitText(text, column.width, body.type.points, smallestNumber);
    FittedText cell = fitText(text, column.width, body.type.points, body.smallest);
    if (rowsNeeded(cell, body.linesInRow) > mostRows)
        cell = fitBlock(text, column.width, mostRows * body.pitch, body.smallest, body.leading);
    return cell;
}

FormLine setLine(const FormBodies &bodies, const FormRecord &record, const QString &summed, int mostRows)
{
    FormLine line;
    for (const FormBody *body : bodies) {
        std::vector<FittedText> &cells = line.cells.emplace_back();
        for (const FormColumn &column : body->columns) {
            FittedText cell = setCell(*body, column, formText(column.source, record), mostRows);
            line.rows = std::max(line.rows, std::min(rowsNeeded(cell, body->linesInRow), mostRows));
            cells.push_back(std::move(cell));
        }
    }
    if (const auto value = record.constFind(summed); value != record.constEnd())
        line.summed = std::holds_alternative<double>(*value) ? std::get<double>(*value) : 0;
    return line;
}

/// How many rows all of \a bodies have on a sheet.
int rowsOn(const FormBodies &bodies, std::size_t sheet)
{
    int rows = bodies.front()->rowsOn(sheet).count;
    for (const FormBody *body : bodies)
        rows = std::min(rows, body->rowsOn(sheet).count);
    return rows;
}

int rowsOf(const FormPage &page)
{
    int rows = 0;
    for (const FormLine &line : page)
        rows += line.rows;
    return rows;
}

void writeCell(SheetWriter &writer, const FittedText &cell, const FormColumn &column, double y, double height,
               const FormBody &body)
{
    const double step = millimetresFromPoints(cell.points) * body.leading;
    const double block =
        static_cast<double>(cell.lines.size() - 1) * step + millimetresFromPoints(cell.points);
    double top = y + (height - block) / 2;
    for (const QString &line : cell.lines) {
        TextItem item{0, 0, line, cell.points, column.align, body.type.bold, column.width};
        item.face = body.type.font;
        writer.text(column.x, top, std::move(item));
        top += step;
    }
}

/// The middle between the dividers around \a column, under which its heading stands.
double headingMiddle(const FormBody &body, const FormColumn &column)
{
    const double share = column.align == Align::Left ? 0.5 : column.align == Align::Centre ? 0 : -0.5;
    const double inside = column.x + column.width * share;
    double left = body.left;
    double right = body.right;
    for (const double divider : body.dividers) {
        if (divider <= inside)
            left = std::max(left, divider);
        else
            right = std::min(right, divider);
    }
    return (left + right) / 2;
}

void writeHeadings(SheetWriter &writer, const FormBody &body, double top)
{
    const double y = top + (body.headingHeight - millimetresFromPoints(body.headingPoints)) / 2;
    if (body.headingGrey < 255)
        writer.box(body.left, top, body.right - body.left, body.headingHeight, 0, body.headingGrey);
    for (const FormColumn &column : body.columns)
        writer.text(headingMiddle(body, column), y, column.heading, body.headingPoints, Align::Centre);
}

void writeRules(SheetWriter &writer, const FormBody &body, double top, double bottom,
                const std::vector<double> &between)
{
    if (body.frame > 0)
        writer.box(body.left, top, body.right - body.left, bottom - top, body.frame);
    if (body.rule > 0) {
        for (const double y : between)
            writer.line(body.left, y, body.right, y, body.rule, body.ruleGrey);
    }
    if (body.divider > 0) {
        for (const double x : body.dividers)
            writer.line(x, top, x, bottom, body.divider);
    }
}

/// The rules above and between the rows, the empty ones below \a page included.
std::vector<double> rowRules(const FormBody &body, const FormPage &page, const FormRows &rows)
{
    std::vector<double> rules;
    if (body.headingHeight > 0)
        rules.push_back(rows.y);
    int used = 0;
    for (const FormLine &line : page) {
        used += line.rows;
        if (used < rows.count)
            rules.push_back(rows.y + used * body.pitch);
    }
    while (++used < rows.count)
        rules.push_back(rows.y + used * body.pitch);
    return rules;
}

} // namespace

std::vector<FormPage> formPages(const FormBodies &bodies, const FormValues &values, bool carryTakesRow)
{
    std::vector<FormPage> pages(1);
    if (bodies.empty())
        return pages;
    const int least = std::min(rowsOn(bodies, 0), rowsOn(bodies, 1));
    const int carried = carryTakesRow ? 1 : 0;
    int used = 0;
    for (const FormRecord &record : values.rows) {
        FormLine line = setLine(bodies, record, values.summed, std::max(1, least - carried));
        const int rows = rowsOn(bodies, pages.size() - 1);
        if (used + line.rows > rows) {
            FormPage next;
            // The line that took the row of the carried sum goes to the next sheet.
            if (used > rows - carried && pages.back().size() > 1) {
                next.push_back(std::move(pages.back().back()));
                pages.back().pop_back();
            }
            pages.push_back(std::move(next));
            used = rowsOf(pages.back());
        }
        if (used + line.rows > rowsOn(bodies, pages.size() - 1)) {
            pages.emplace_back();
            used = 0;
        }
        used += line.rows;
        pages.back().push_back(std::move(line));
    }
    return pages;
}

double formRowAfter(const FormBody &body, const FormPage &page, std::size_t sheet)
{
    return body.rowsOn(sheet).y + rowsOf(page) * body.pitch;
}

void writeFormBody(SheetWriter &writer, const FormBody &body, std::size_t cells, const FormPage &page,
                   std::size_t sheet)
{
    const FormRows &rows = body.rowsOn(sheet);
    const double top = rows.y - body.headingHeight;
    if (body.headingHeight > 0)
        writeHeadings(writer, body, top);
    double y = rows.y;
    for (const FormLine &line : page) {
        const double height = line.rows * body.pitch;
        for (std::size_t column = 0; column < body.columns.size(); ++column)
            writeCell(writer, line.cells[cells][column], body.columns[column], y, height, body);
        y += height;
    }
    writeRules(writer, body, top, rows.y + rows.count * body.pitch, rowRules(body, page, rows));
}

} // namespace printing

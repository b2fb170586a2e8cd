#include "printing/list_sheet.h"

#include "printing/sheet_writer.h"
#include "printing/text_fit.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

// Millimetres.
constexpr double margin = 12;
constexpr double titleTop = 11;
constexpr double remarkTop = 20;
constexpr double tableTop = 25.5;
constexpr double footHeight = 15;
constexpr double rowHeight = 7.4; // of the headings too
constexpr double padding = 1;
constexpr double cellHeight = rowHeight - 0.6;
constexpr double thin = 0.15;
constexpr double thick = 0.4;

constexpr double titlePoints = 15;
constexpr double points = 9;
constexpr double smallPoints = 7.5; // below it, text is rather broken into lines
constexpr double leading = 1.1;

constexpr int ruleGrey = 150;
constexpr int headingGrey = 236;

Align alignOf(const base::Column &column)
{
    if (column.centred)
        return Align::Centre;
    return base::isNumber(column.format) ? Align::Right : Align::Left;
}

class ListLayout
{
public:
    explicit ListLayout(const List &list)
        : m_list(list)
        , m_right(list.paperWidth - margin)
        , m_lines(linesOf(list))
    {
        placeColumns();
    }

    std::vector<Sheet> sheets() const
    {
        std::vector<Sheet> sheets;
        const std::size_t count = m_list.rows.size() + (m_list.totals ? 1 : 0);
        const std::size_t pages = std::max<std::size_t>(1, (count + m_lines - 1) / m_lines);
        for (std::size_t page = 0; page < pages; ++page) {
            const std::size_t first = page * m_lines;
            Sheet &sheet = sheets.emplace_back();
            sheet.setCutPaper(m_list.paperWidth, m_list.paperHeight);
            sheet.origin = Origin::PaperEdge;
            SheetWriter writer(sheet);
            writeFrame(writer, page, pages);
            writeTable(writer, first, std::min(count, first + m_lines));
        }
        return sheets;
    }

private:
    static std::size_t linesOf(const List &list)
    {
        const double room = list.paperHeight - footHeight - tableTop - rowHeight;
        return static_cast<std::size_t>(std::max(1.0, room / rowHeight));
    }

    // Their left edges, and the right edge of the last one.
    void placeColumns()
    {
        const double room = m_right - margin;
        double natural = 0;
        double stretching = 0;
        for (const base::Column &column : m_list.columns) {
            natural += column.millimetres;
            stretching += column.stretches ? column.millimetres : 0;
        }
        const double shrink = natural > room ? room / natural : 1;
        const double stretch = natural < room && stretching > 0 ? 1 + (room - natural) / stretching : 1;
        m_edges.push_back(margin);
        for (const base::Column &column : m_list.columns)
            m_edges.push_back(m_edges.back() +
                              column.millimetres * shrink * (column.stretches ? stretch : 1));
    }

    void writeFrame(SheetWriter &writer, std::size_t page, std::size_t pages) const
    {
        const double middle = m_list.paperWidth / 2;
        const QString title = singleLine(m_list.title);
        writer.text(middle, titleTop, title, fittingPoints(title, m_right - margin, titlePoints),
                    Align::Centre);
        writer.text(margin, remarkTop, m_list.remark, points);
        writer.text(m_right, remarkTop, m_list.date, points, Align::Right);
        writer.text(middle, m_list.paperHeight - footHeight + 4, u"%1 / %2"_s.arg(page + 1).arg(pages),
                    points, Align::Centre);
    }

    void writeTable(SheetWriter &writer, std::size_t first, std::size_t end) const
    {
        const double right = m_edges.back();
        const double bottom = tableTop + rowHeight + static_cast<double>(end - first) * rowHeight;
        writer.box(margin, tableTop, right - margin, rowHeight, 0, headingGrey);
        for (std::size_t column = 0; column < m_list.columns.size(); ++column)
            writeCell(writer, m_list.columns[column].heading, column, tableTop, Align::Centre, false);
        double y = tableTop + rowHeight;
        for (std::size_t row = first; row < end; ++row, y += rowHeight) {
            const bool isTotals = row == m_list.rows.size();
            if (isTotals)
                writer.box(margin, y, right - margin, rowHeight, 0, headingGrey);
            writeRow(writer, isTotals ? *m_list.totals : m_list.rows[row], y, isTotals);
            writer.line(margin, y, right, y, thin, ruleGrey);
        }
        for (std::size_t edge = 1; edge + 1 < m_edges.size(); ++edge)
            writer.line(m_edges[edge], tableTop, m_edges[edge], bottom, thin, ruleGrey);
        writer.box(margin, tableTop, right - margin, bottom - tableTop, thick);
    }

    void writeRow(SheetWriter &writer, const QStringList &cells, double y, bool bold) const
    {
        const auto count = std::min(static_cast<std::size_t>(cells.size()), m_list.columns.size());
        for (std::size_t column = 0; column < count; ++column)
            writeCell(writer, cells[static_cast<qsizetype>(column)], column, y,
                      alignOf(m_list.columns[column]), bold);
    }

    void writeCell(SheetWriter &writer, const QString &text, std::size_t column, double y, Align align,
                   bool bold) const
    {
        if (text.isEmpty())
            return;
        const double left = m_edges[column] + padding;
        const double right = m_edges[column + 1] - padding;
        const FittedText cell = setText(text, right - left, align);
        const double anchor = align == Align::Left    ? left
                              : align == Align::Right ? right
                                                      : (left + right) / 2;
        const double step = millimetresFromPoints(cell.points) * leading;
        const double block =
            static_cast<double>(cell.lines.size() - 1) * step + millimetresFromPoints(cell.points);
        double top = y + (rowHeight - block) / 2;
        for (const QString &line : cell.lines) {
            writer.text(anchor, top, line, cell.points, align, right - left, bold);
            top += step;
        }
    }

    static FittedText setText(const QString &text, double room, Align align)
    {
        const QString line = singleLine(text);
        if (align == Align::Right)
            return {{line}, fittingPoints(line, room, points)};
        const bool broken = text.contains(u'\n');
        const double fitting = broken ? 0 : fittingPoints(line, room, points);
        if (fitting >= smallPoints)
            return {{line}, fitting};
        return fitBlock(text, room, cellHeight, broken ? points : smallPoints, leading);
    }

    const List &m_list;
    double m_right;
    std::size_t m_lines; // rows on a page
    std::vector<double> m_edges;
};

} // namespace

std::vector<Sheet> listSheets(const List &list) { return ListLayout(list).sheets(); }

} // namespace printing

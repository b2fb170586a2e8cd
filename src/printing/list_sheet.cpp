#include "printing/list_sheet.h"

#include "printing/cell_text.h"
#include "printing/text_fit.h"
#include "text/format_value.h"

#include <algorithm>
#include <memory>
#include <numeric>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

// Millimetres.
constexpr double shortSide = 210;
constexpr double longSide = 297;
constexpr double margin = 12;
constexpr double titleTop = 11;
constexpr double remarkTop = 20;
constexpr double tableTop = 25.5;
constexpr double footHeight = 15;
constexpr double rowHeight = 7.4; // of the headings too
constexpr double padding = 1;
constexpr double thin = 0.15;
constexpr double thick = 0.4;

constexpr double titlePoints = 15;

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
    ListLayout(base::Report report, const QString &date, ListPaper paper)
        : m_report(std::move(report))
        , m_date(date)
        , m_width(paper == ListPaper::Upright ? shortSide : longSide)
        , m_height(paper == ListPaper::Upright ? longSide : shortSide)
    {
        placeColumns();
        measureRows();
        breakPages();
    }

    std::size_t pageCount() const { return m_breaks.size() - 1; }

    Sheet sheet(std::size_t page) const
    {
        Sheet sheet;
        sheet.setCutPaper(m_width, m_height);
        sheet.origin = Origin::PaperEdge;
        SheetWriter writer(sheet);
        writeFrame(writer, page);
        writeTable(writer, m_breaks[page], m_breaks[page + 1]);
        return sheet;
    }

private:
    // The totals are the last line.
    std::size_t lineCount() const { return m_report.rows.size() + (m_report.totals.isEmpty() ? 0 : 1); }

    base::RowKind kindOf(std::size_t line) const
    {
        return line < m_report.rows.size() ? m_report.rows[line].kind : base::RowKind::Subtotal;
    }

    QString textAt(std::size_t line, std::size_t column) const
    {
        const QVariantList &values =
            line < m_report.rows.size() ? m_report.rows[line].values : m_report.totals;
        return text::formatValue(m_report.columns[column].format,
                                 values.value(static_cast<qsizetype>(column)));
    }

    double roomOf(std::size_t column) const { return m_edges[column + 1] - m_edges[column] - 2 * padding; }

    // How high each line is.
    void measureRows()
    {
        m_heights.assign(lineCount(), rowHeight);
        for (std::size_t line = 0; line < m_heights.size(); ++line) {
            for (std::size_t column = 0; column < m_report.columns.size(); ++column) {
                if (alignOf(m_report.columns[column]) != Align::Right)
                    m_heights[line] = std::max(m_heights[line],
                                               cellHeight(textAt(line, column), roomOf(column), rowHeight));
            }
        }
    }

    // The first line of each page, and the end of the last one.
    void breakPages()
    {
        const double room = m_height - footHeight - tableTop - rowHeight;
        const std::size_t count = lineCount();
        m_breaks = {0};
        do {
            std::size_t end = m_breaks.back();
            for (double left = room; end < count && m_heights[end] <= left; ++end)
                left -= m_heights[end];
            while (end < count && end - 1 > m_breaks.back() && kindOf(end - 1) == base::RowKind::Heading)
                --end;
            m_breaks.push_back(end);
        } while (m_breaks.back() < count);
    }

    // Their left edges, and the right edge of the last one.
    void placeColumns()
    {
        const double room = right() - margin;
        double natural = 0;
        double stretching = 0;
        for (const base::Column &column : m_report.columns) {
            natural += column.millimetres;
            stretching += column.stretches ? column.millimetres : 0;
        }
        const double shrink = natural > room ? room / natural : 1;
        const double stretch = natural < room && stretching > 0 ? 1 + (room - natural) / stretching : 1;
        m_edges.push_back(margin);
        for (const base::Column &column : m_report.columns)
            m_edges.push_back(m_edges.back() +
                              column.millimetres * shrink * (column.stretches ? stretch : 1));
    }

    double right() const { return m_width - margin; }

    void writeFrame(SheetWriter &writer, std::size_t page) const
    {
        const double middle = m_width / 2;
        const QString title = singleLine(m_report.title);
        writer.text(middle, titleTop, title, fittingPoints(title, right() - margin, titlePoints),
                    Align::Centre);
        writer.text(margin, remarkTop, m_report.remark, cellPoints);
        writer.text(right(), remarkTop, m_date, cellPoints, Align::Right);
        writer.text(middle, m_height - footHeight + 4, u"%1 / %2"_s.arg(page + 1).arg(pageCount()),
                    cellPoints, Align::Centre);
    }

    void writeTable(SheetWriter &writer, std::size_t first, std::size_t end) const
    {
        const double right = m_edges.back();
        const auto heights = m_heights.begin();
        const double bottom =
            std::accumulate(heights + static_cast<std::ptrdiff_t>(first),
                            heights + static_cast<std::ptrdiff_t>(end), tableTop + rowHeight);
        writer.box(margin, tableTop, right - margin, rowHeight, 0, headingGrey);
        for (std::size_t column = 0; column < m_report.columns.size(); ++column)
            writeCell(writer, m_report.columns[column].heading, column, {tableTop, rowHeight}, Align::Centre,
                      false);
        double y = tableTop + rowHeight;
        for (std::size_t row = first; row < end; y += m_heights[row++]) {
            if (kindOf(row) == base::RowKind::Subtotal)
                writer.box(margin, y, right - margin, m_heights[row], 0, headingGrey);
            writeRow(writer, row, y);
            writer.line(margin, y, right, y, thin, ruleGrey);
        }
        for (std::size_t edge = 1; edge + 1 < m_edges.size(); ++edge)
            writer.line(m_edges[edge], tableTop, m_edges[edge], bottom, thin, ruleGrey);
        writer.box(margin, tableTop, right - margin, bottom - tableTop, thick);
    }

    void writeRow(SheetWriter &writer, std::size_t row, double y) const
    {
        for (std::size_t column = 0; column < m_report.columns.size(); ++column)
            writeCell(writer, textAt(row, column), column, {y, m_heights[row]},
                      alignOf(m_report.columns[column]), kindOf(row) != base::RowKind::Plain);
    }

    struct Band
    {
        double top, height;
    };

    void writeCell(SheetWriter &writer, const QString &text, std::size_t column, Band row, Align align,
                   bool bold) const
    {
        printing::writeCell(writer, text,
                            {m_edges[column] + padding, m_edges[column + 1] - padding, row.top, row.height},
                            align, bold);
    }

    const base::Report m_report;
    const QString m_date;
    const double m_width;
    const double m_height;
    std::vector<double> m_edges;
    std::vector<double> m_heights; // of the lines
    std::vector<std::size_t> m_breaks;
};

} // namespace

ListPaper paperFor(const base::Report &report)
{
    constexpr std::size_t mostUpright = 6;
    return report.columns.size() > mostUpright ? ListPaper::Lying : ListPaper::Upright;
}

ListPaper paperByWidths(const base::Report &report)
{
    const double wanted =
        std::accumulate(report.columns.begin(), report.columns.end(), 0.0,
                        [](double sum, const base::Column &column) { return sum + column.millimetres; });
    return wanted > shortSide - 2 * margin ? ListPaper::Lying : ListPaper::Upright;
}

Sheets listSheets(base::Report report, const QString &date, ListPaper paper)
{
    const auto layout = std::make_shared<const ListLayout>(std::move(report), date, paper);
    return {layout->pageCount(), [layout](std::size_t page) { return layout->sheet(page); }};
}

} // namespace printing

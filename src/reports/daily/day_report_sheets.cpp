#include "reports/daily/day_report_sheets.h"

#include "base/exact_sum.h"
#include "printing/cell_text.h"
#include "printing/text_fit.h"
#include "text/dates.h"
#include "text/numbers.h"

#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

using printing::Align;
using printing::SheetWriter;

// Millimetres.
constexpr double shortSide = 210;
constexpr double longSide = 297;
constexpr double margin = 12;
constexpr double titleTop = 12;
constexpr double periodTop = 22;
constexpr double headingTop = 29;
constexpr double tableTop = 34;
constexpr double footHeight = 20; // from where the rows end
constexpr double rowHeight = 5.2;
constexpr double gap = 1; // between columns
constexpr double thin = 0.15;
constexpr double thick = 0.3;
constexpr int ruleGrey = 190;
constexpr int sumGrey = 236;

QString str(const char16_t *text) { return QString::fromUtf16(text); }

/// Size of the headings, and where they and their columns begin, in half-width characters of that size.
struct PaperMeasures
{
    double width;
    double height;
    double titlePoints; // 17 blanks of that size put the title into the middle
    double points;
    double name; // of the counterpart
    double item; // behind the name
    double second;
};

constexpr PaperMeasures upright{shortSide, longSide, 14, 9, 16, 44, 78};
constexpr PaperMeasures lying{longSide, shortSide, 20, 10.5, 16, 46, 46};

enum Column { Date, Counterpart, Item, Quantity, Unit, Price, Amount, Remark, columnCount };

struct Place
{
    double left = 0;
    double right = 0; // not right of the left edge: the column is not there
    Align align = Align::Left;
};

using Cells = std::array<QString, columnCount>;

/// Where the columns are: under the words of the headings.
class Columns
{
public:
    Columns(const DayReportDescription &description, DayPaper paper, const PaperMeasures &measures)
        : m_measures(measures)
        , m_heading(str(paper == DayPaper::Upright ? description.uprightHeading : description.lyingHeading))
    {
        const QString amount = str(paper == DayPaper::Upright ? description.amount : description.lyingAmount);
        const double amountEnd = endOf(amount);
        m_places[Date] = {margin, at(measures.name) - gap};
        m_places[Counterpart] = {at(measures.name), at(measures.item) - gap};
        if (paper == DayPaper::Lying && description.hasGoods)
            placeGoods(amountEnd);
        else
            m_places[Item] = {at(measures.item), amountEnd - roomOfAmounts - gap};
        m_places[Amount] = {amountEnd - roomOfAmounts, amountEnd, Align::Right};
        m_places[Remark] = {startOf(u"備考"_s), measures.width - margin};
    }

    [[nodiscard]] const Place &operator[](std::size_t column) const { return m_places.at(column); }
    [[nodiscard]] const QString &heading() const { return m_heading; }
    [[nodiscard]] double headingLeft() const { return at(m_measures.second); }

private:
    static constexpr double roomOfAmounts = 24; // 999,999,999,999 with its minus
    static constexpr double roomOfQuantities = 18;
    static constexpr double roomOfUnits = 9;

    [[nodiscard]] double at(double characters) const
    {
        return margin + characters * printing::millimetresFromPoints(m_measures.points / 2);
    }
    [[nodiscard]] double startOf(const QString &word) const
    {
        const QStringView before = QStringView(m_heading).first(m_heading.indexOf(word));
        return headingLeft() + printing::textWidth(before, m_measures.points);
    }
    [[nodiscard]] double endOf(const QString &word) const
    {
        return startOf(word) + printing::textWidth(word, m_measures.points);
    }

    void placeGoods(double amountEnd)
    {
        const double quantityEnd = endOf(u"数量"_s) - gap;
        const double unitEnd = quantityEnd + gap + roomOfUnits;
        m_places[Item] = {at(m_measures.item), quantityEnd - roomOfQuantities - gap};
        m_places[Quantity] = {quantityEnd - roomOfQuantities, quantityEnd, Align::Right};
        m_places[Unit] = {quantityEnd + gap, unitEnd};
        m_places[Price] = {unitEnd + gap, std::min(endOf(u"単価"_s), amountEnd - roomOfAmounts - gap),
                           Align::Right};
    }

    const PaperMeasures &m_measures;
    QString m_heading;
    std::array<Place, columnCount> m_places;
};

// A row of paper: a line of the report, or a sum or a note below some.
struct Row
{
    enum Kind { Line, Subtotal, Total, Rate, Note } kind = Line;
    std::size_t index = 0; // of the line, the rate or the note
    double sum = 0;
};

std::vector<Row> rowsFor(const DayReport &report, qsizetype notes)
{
    std::vector<Row> rows;
    base::ExactSum day;
    for (std::size_t i = 0; i < report.lines.size(); ++i) {
        rows.push_back({Row::Line, i});
        day.add(report.lines[i].line.amount);
        if (i + 1 < report.lines.size() && report.lines[i + 1].line.date == report.lines[i].line.date)
            continue;
        rows.push_back({Row::Subtotal, 0, day.value()});
        day = {};
    }
    rows.push_back({Row::Total, 0, report.total});
    for (std::size_t i = 0; i < report.rates.size(); ++i)
        rows.push_back({Row::Rate, i});
    for (qsizetype i = 0; i < notes; ++i)
        rows.push_back({Row::Note, static_cast<std::size_t>(i)});
    return rows;
}

class DayLayout
{
public:
    DayLayout(DayReport report, DayPaper paper)
        : m_report(std::move(report))
        , m_description(descriptionOf(m_report.kind))
        , m_paper(paper)
        , m_measures(paper == DayPaper::Upright ? upright : lying)
        , m_columns(m_description, paper, m_measures)
        , m_notes(notesOn(m_report))
        , m_rows(rowsFor(m_report, m_notes.size()))
    {
        measureRows();
        breakPages();
    }

    [[nodiscard]] std::size_t pageCount() const { return m_breaks.size() - 1; }

    [[nodiscard]] printing::Sheet sheet(std::size_t page) const
    {
        printing::Sheet sheet;
        sheet.setCutPaper(m_measures.width, m_measures.height);
        sheet.origin = printing::Origin::PaperEdge;
        SheetWriter writer(sheet);
        writeHeading(writer, page);
        double y = tableTop;
        for (std::size_t row = m_breaks[page]; row < m_breaks[page + 1]; y += m_heights[row++])
            writeRow(writer, row, y);
        if (page + 1 < pageCount())
            writer.text(right(), y + gap, u"次頁へ"_s, printing::cellPoints, Align::Right);
        return sheet;
    }

private:
    [[nodiscard]] double right() const { return m_measures.width - margin; }

    void measureRows()
    {
        m_heights.reserve(m_rows.size());
        for (const Row &row : m_rows) {
            double height = rowHeight;
            const Cells cells = row.kind == Row::Line ? cellsOf(row) : Cells();
            for (const Column column : {Counterpart, Item, Unit, Remark})
                height = std::max(height, heightOf(cells.at(column), m_columns[column]));
            m_heights.push_back(height);
        }
    }

    [[nodiscard]] static double heightOf(const QString &text, const Place &place)
    {
        return text.isEmpty() ? 0 : printing::cellHeight(text, place.right - place.left, rowHeight);
    }

    void breakPages()
    {
        constexpr double rounding = 1e-6;
        const double room = m_measures.height - footHeight - tableTop + rounding;
        m_breaks = {0};
        double used = 0;
        for (std::size_t row = 0; row < m_rows.size(); ++row) {
            if (used + m_heights[row] > room) {
                m_breaks.push_back(row);
                used = 0;
            }
            used += m_heights[row];
        }
        m_breaks.push_back(m_rows.size());
    }

    // The blanks of the three texts are part of them.
    void writeHeading(SheetWriter &writer, std::size_t page) const
    {
        const double points = m_measures.points;
        writer.text(right(), titleTop, u"Page %1"_s.arg(page + 1), points, Align::Right);
        writer.text(margin, titleTop, QString(17, u'　') + str(m_description.name), m_measures.titlePoints);
        const QString before = m_paper == DayPaper::Upright ? u" 　　　　期間　"_s : u"　　　　期間　"_s;
        const book::Period &period = m_report.period;
        writer.text(margin, periodTop,
                    before + text::formatDate(period.from) + u"　～　"_s + text::formatDate(period.to),
                    points);
        writer.text(margin, headingTop, firstHeading(m_report.kind), points);
        writer.text(m_columns.headingLeft(), headingTop, m_columns.heading(), points);
        writer.line(margin, tableTop, right(), tableTop, thick);
    }

    void writeRow(SheetWriter &writer, std::size_t index, double y) const
    {
        const Row &row = m_rows[index];
        const double height = m_heights[index];
        const bool isSum = row.kind == Row::Subtotal || row.kind == Row::Total;
        if (isSum)
            writer.box(margin, y, right() - margin, height, 0, sumGrey);
        if (row.kind == Row::Note) {
            const printing::Cell whole{m_columns[Counterpart].left, right(), y, height};
            printing::writeCell(writer, m_notes.at(static_cast<qsizetype>(row.index)), whole, Align::Left);
        } else {
            writeCells(writer, cellsOf(row), {0, 0, y, height}, isSum);
        }
        writer.line(margin, y + height, right(), y + height, row.kind == Row::Total ? thick : thin,
                    row.kind == Row::Total ? 0 : ruleGrey);
    }

    void writeCells(SheetWriter &writer, const Cells &cells, printing::Cell cell, bool bold) const
    {
        for (std::size_t column = 0; column < columnCount; ++column) {
            const Place &place = m_columns[column];
            cell.left = place.left;
            cell.right = place.right;
            if (place.right > place.left)
                printing::writeCell(writer, cells.at(column), cell, place.align, bold);
        }
    }

    [[nodiscard]] Cells cellsOf(const Row &row) const
    {
        Cells cells;
        if (row.kind == Row::Line)
            return cellsOf(m_report.lines[row.index]);
        if (row.kind == Row::Rate) {
            const DayRate &rate = m_report.rates[row.index];
            cells[Counterpart] = rate.name;
            cells[Amount] = text::formatAmount(rate.amount);
            cells[Remark] = taxInWords(rate);
        } else {
            cells[Counterpart] = row.kind == Row::Total ? u"合計"_s : u"小計"_s;
            cells[Amount] = text::formatAmount(row.sum);
        }
        return cells;
    }

    [[nodiscard]] Cells cellsOf(const DayLine &each) const
    {
        const book::Movement &line = each.line;
        Cells cells;
        cells[Date] = text::shownDay(line.date);
        cells[Counterpart] = each.counterpart;
        cells[Item] = line.product;
        cells[Amount] = text::formatAmount(line.amount);
        cells[Remark] = each.remark;
        if (m_paper == DayPaper::Upright)
            return cells;
        if (!line.specification.isEmpty())
            cells[Item] += u'　' + line.specification;
        cells[Quantity] = line.quantity ? text::formatQuantity(*line.quantity) : QString();
        cells[Unit] = line.unit;
        cells[Price] = line.price ? text::formatQuantity(*line.price) : QString();
        return cells;
    }

    const DayReport m_report;
    const DayReportDescription &m_description;
    const DayPaper m_paper;
    const PaperMeasures &m_measures;
    const Columns m_columns;
    const QStringList m_notes;
    const std::vector<Row> m_rows;
    std::vector<double> m_heights; // of the rows
    std::vector<std::size_t> m_breaks;
};

} // namespace

printing::Sheets dayReportSheets(DayReport report, DayPaper paper)
{
    if (report.lines.empty())
        return {};
    const auto layout = std::make_shared<const DayLayout>(std::move(report), paper);
    return {layout->pageCount(), [layout](std::size_t page) { return layout->sheet(page); }};
}

} // namespace reports

#include "reports/charts/chart_sheet.h"

#include "printing/cell_text.h"
#include "printing/text_fit.h"
#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

using printing::Align;

// Millimetres.
constexpr double paperWidth = 297;
constexpr double paperHeight = 210;
constexpr double margin = 15;
constexpr double titleTop = 12;
constexpr double remarkTop = 22;
constexpr double legendTop = 29;
constexpr double plotTop = 38;
constexpr double plotBottom = paperHeight - 28;
constexpr double roomOfAmounts = 26;
constexpr double roomOfNames = 72;
constexpr double right = paperWidth - margin;
constexpr double titlePoints = 15;
constexpr double points = 9;
constexpr double barPoints = 7;
constexpr double barShare = 0.7; // of the room of its category

constexpr std::array greys{190, 90}; // of the series: they are told apart without colours
constexpr int ruleGrey = 200;
constexpr double ruleWidth = 0.1;

class Drawing
{
public:
    Drawing(const ChartData &data, printing::SheetWriter &writer)
        : m_data(data)
        , m_writer(writer)
        , m_scale(scaleFor(data))
        , m_left(margin + (data.lying ? roomOfNames : roomOfAmounts))
    {}

    void draw(const QString &date)
    {
        m_writer.text(paperWidth / 2, titleTop, m_data.title, titlePoints, Align::Centre);
        m_writer.text(margin, remarkTop, m_data.remark, points);
        m_writer.text(right, remarkTop, date, points, Align::Right);
        drawLegend();
        drawScale();
        for (qsizetype category = 0; category < m_data.categories.size(); ++category)
            drawCategory(category);
        const double zero = placeOf(0);
        if (m_data.lying)
            m_writer.line(zero, plotTop, zero, plotBottom, 0.3);
        else
            m_writer.line(m_left, zero, right, zero, 0.3);
    }

private:
    // Along the axis of amounts.
    [[nodiscard]] double placeOf(double amount) const
    {
        const double share = (amount - m_scale.least) / (m_scale.most - m_scale.least);
        return m_data.lying ? m_left + share * (right - roomOfAmounts - m_left)
                            : plotBottom - share * (plotBottom - plotTop);
    }

    // Along the other one.
    [[nodiscard]] double roomOfCategory() const
    {
        const double all = m_data.lying ? plotBottom - plotTop : right - m_left;
        return all / static_cast<double>(std::max<qsizetype>(m_data.categories.size(), 1));
    }

    void drawLegend()
    {
        double x = m_left;
        for (std::size_t i = 0; i < m_data.series.size() && m_data.series.size() > 1; ++i) {
            m_writer.box(x, legendTop, 5, 3.2, 0.15, greys.at(i % greys.size()));
            m_writer.text(x + 7, legendTop, m_data.series[i].name, points);
            x += 14 + printing::textWidth(m_data.series[i].name, points);
        }
    }

    // As boxes, which lie under the bars.
    void drawScale()
    {
        for (double mark = m_scale.least; mark <= m_scale.most + m_scale.step / 2; mark += m_scale.step) {
            const double at = placeOf(mark);
            const QString amount = text::formatAmount(mark);
            if (m_data.lying) {
                m_writer.box(at, plotTop, ruleWidth, plotBottom - plotTop, 0, ruleGrey);
                m_writer.text(at, plotBottom + 2, amount, points, Align::Centre);
            } else {
                m_writer.box(m_left, at, right - m_left, ruleWidth, 0, ruleGrey);
                m_writer.text(m_left - 2, at - 1.6, amount, points, Align::Right);
            }
        }
    }

    void drawCategory(qsizetype category)
    {
        const double room = roomOfCategory();
        const double start = (m_data.lying ? plotTop : m_left) + static_cast<double>(category) * room;
        const QString &name = m_data.categories.at(category);
        if (m_data.lying)
            printing::writeCell(m_writer, name, {margin, m_left - 2, start, room}, Align::Left);
        else
            m_writer.text(start + room / 2, plotBottom + 2, name, points, Align::Centre, room);
        const double thickness = room * barShare / static_cast<double>(m_data.series.size());
        double at = start + room * (1 - barShare) / 2;
        for (std::size_t i = 0; i < m_data.series.size(); ++i, at += thickness)
            drawBar(at, thickness, m_data.series[i].values.at(static_cast<std::size_t>(category)),
                    greys.at(i % greys.size()));
    }

    // An amount that is no number has no bar, and says so.
    void drawBar(double at, double thickness, double amount, int grey)
    {
        if (amount == 0)
            return;
        const QString text = text::formatAmount(amount);
        const double zero = placeOf(0);
        const double end = std::isfinite(amount) ? placeOf(amount) : zero;
        const double low = std::min(zero, end);
        const double length = std::abs(end - zero);
        if (m_data.lying) {
            if (length > 0)
                m_writer.box(low, at, length, thickness, 0.15, grey);
            m_writer.text(std::max(zero, end) + 1, at + thickness / 2 - 1.6, text, points);
        } else {
            if (length > 0)
                m_writer.box(at, low, thickness, length, 0.15, grey);
            const double fitting = printing::fittingPoints(text, thickness + 1.5, barPoints);
            m_writer.text(at + thickness / 2, low - printing::millimetresFromPoints(fitting) - 0.4, text,
                          fitting, Align::Centre);
        }
    }

    const ChartData &m_data;
    printing::SheetWriter &m_writer;
    const ChartScale m_scale;
    const double m_left;
};

// 1, 2 or 5 with zeros behind it, not below \a least.
double roundStep(double least)
{
    const double power = std::pow(10, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least * (1 - 1e-9))
            return factor * power;
    }
    return 10 * power;
}

} // namespace

ChartScale scaleFor(double least, double most)
{
    constexpr double marks = 6;
    least = std::min(least, 0.0);
    most = std::max(most, 0.0);
    if (most - least < 1) // yen
        most = least + 1;
    const double step = std::max(1.0, roundStep((most - least) / marks));
    return {std::floor(least / step) * step, std::ceil(most / step) * step, step};
}

ChartScale scaleFor(const ChartData &data)
{
    double least = 0;
    double most = 0;
    for (const ChartSeries &series : data.series) {
        for (const double value : series.values) {
            least = std::isfinite(value) ? std::min(least, value) : least;
            most = std::isfinite(value) ? std::max(most, value) : most;
        }
    }
    return scaleFor(least, most);
}

printing::Sheet chartSheet(const ChartData &data, const QString &date)
{
    printing::Sheet sheet;
    sheet.setCutPaper(paperWidth, paperHeight);
    sheet.origin = printing::Origin::PaperEdge;
    printing::SheetWriter writer(sheet);
    Drawing(data, writer).draw(date);
    return sheet;
}

} // namespace reports

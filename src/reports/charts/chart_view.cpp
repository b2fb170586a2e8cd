#include "reports/charts/chart_view.h"

#include "reports/charts/chart_sheet.h"

#include <QtCharts/QBarCategoryAxis>
#include <QtCharts/QBarSeries>
#include <QtCharts/QBarSet>
#include <QtCharts/QHorizontalBarSeries>
#include <QtCharts/QValueAxis>

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace reports
{

namespace
{

// Told apart by those who do not see colours, too: one is much darker.
const QColor lightBar(143, 188, 200);
const QColor darkBar(44, 100, 118);

QAbstractBarSeries *barsOf(const ChartData &data, const std::vector<std::size_t> &order)
{
    QAbstractBarSeries *bars = data.lying ? static_cast<QAbstractBarSeries *>(new QHorizontalBarSeries)
                                          : static_cast<QAbstractBarSeries *>(new QBarSeries);
    for (std::size_t i = 0; i < data.series.size(); ++i) {
        auto *set = new QBarSet(data.series[i].name);
        set->setColor(i == 0 && data.series.size() > 1 ? lightBar : darkBar);
        for (const std::size_t category : order) {
            const double value = data.series[i].values[category];
            set->append(std::isfinite(value) ? value : 0);
        }
        bars->append(set);
    }
    return bars;
}

// From the top on in a lying chart, whose axis counts from below.
std::vector<std::size_t> orderOf(const ChartData &data)
{
    std::vector<std::size_t> order(static_cast<std::size_t>(data.categories.size()));
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = data.lying ? order.size() - 1 - i : i;
    return order;
}

} // namespace

ChartView::ChartView(QWidget *parent)
    : QChartView(parent)
{
    setRenderHint(QPainter::Antialiasing);
    setFocusPolicy(Qt::NoFocus);
    chart()->setLocalizeNumbers(true);
    chart()->setMargins({4, 4, 4, 4});
    chart()->setBackgroundRoundness(0);
}

void ChartView::showData(const ChartData &figures)
{
    chart()->removeAllSeries();
    const QList<QAbstractAxis *> axes = chart()->axes();
    for (QAbstractAxis *axis : axes) {
        chart()->removeAxis(axis);
        delete axis;
    }
    chart()->setTitle(figures.title.toHtmlEscaped() + QStringLiteral("　") + figures.remark.toHtmlEscaped());
    const std::vector<std::size_t> order = orderOf(figures);
    QAbstractBarSeries *bars = barsOf(figures, order);
    chart()->addSeries(bars);
    auto *names = new QBarCategoryAxis;
    for (const std::size_t category : order)
        names->append(figures.categories.at(static_cast<qsizetype>(category)));
    const ChartScale scale = scaleFor(figures);
    auto *amounts = new QValueAxis;
    amounts->setRange(scale.least, scale.most);
    amounts->setTickCount(static_cast<int>(std::lround((scale.most - scale.least) / scale.step)) + 1);
    amounts->setLabelFormat(QStringLiteral("%.0f"));
    chart()->addAxis(names, figures.lying ? Qt::AlignLeft : Qt::AlignBottom);
    chart()->addAxis(amounts, figures.lying ? Qt::AlignBottom : Qt::AlignLeft);
    bars->attachAxis(names);
    bars->attachAxis(amounts);
    chart()->legend()->setVisible(figures.series.size() > 1);
    for (QAbstractAxis *axis : {static_cast<QAbstractAxis *>(names), static_cast<QAbstractAxis *>(amounts)})
        axis->setLabelsFont(font());
    chart()->legend()->setFont(font());
    chart()->setTitleFont(font());
}

QImage ChartView::picture()
{
    constexpr int sharpness = 2;
    QImage image(size() * sharpness, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    render(&painter, QRectF(image.rect()), viewport()->rect(), Qt::IgnoreAspectRatio);
    return image;
}

} // namespace reports

#pragma once

#include "reports/charts/chart_data.h"

#include <QImage>

#include <QtCharts/QChartView>

namespace reports
{

/// Shows figures as bars, with the text size of its screen.
class ChartView : public QChartView
{
    Q_OBJECT

public:
    explicit ChartView(QWidget *parent = nullptr);

    void showData(const ChartData &figures);

    /// The chart as it is shown, sharp enough to be put into a letter.
    [[nodiscard]] QImage picture();
};

} // namespace reports

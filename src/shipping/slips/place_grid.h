#pragma once

#include "shipping/slips/label_sheet.h"

#include <QWidget>

namespace shipping
{

/// A sheet of labels in small, on which a place is chosen by a click or with the arrow keys.
class PlaceGrid : public QWidget
{
    Q_OBJECT

public:
    explicit PlaceGrid(QWidget *parent = nullptr);

    void show(const LabelSheet &sheet, int place);
    [[nodiscard]] int place() const { return m_place; }

    [[nodiscard]] QSize sizeHint() const override;

signals:
    void chosen(int place);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] QRectF areaOf(int place) const;
    void choose(int place);

    LabelSheet m_sheet;
    int m_place = 1;
};

} // namespace shipping

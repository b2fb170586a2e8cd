#include "shipping/slips/place_grid.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

#include <optional>

namespace shipping
{

namespace
{

constexpr QSizeF paper(210, 297);
constexpr double scale = 0.34; // dots to the millimetre

// Where an arrow leads; nothing for another key.
std::optional<int> stepOf(int key, int across, int places)
{
    switch (key) {
    case Qt::Key_Left:
        return -1;
    case Qt::Key_Right:
        return 1;
    case Qt::Key_Up:
        return -across;
    case Qt::Key_Down:
        return across;
    case Qt::Key_Home:
        return -places;
    case Qt::Key_End:
        return places;
    default:
        return std::nullopt;
    }
}

} // namespace

PlaceGrid::PlaceGrid(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(sizeHint());
}

QSize PlaceGrid::sizeHint() const { return (paper * scale).toSize() + QSize(2, 2); }

void PlaceGrid::show(const LabelSheet &sheet, int place)
{
    m_sheet = sheet;
    m_place = place;
    update();
}

QRectF PlaceGrid::areaOf(int place) const
{
    const auto area = labelArea(m_sheet, place);
    return area ? QRectF(area->topLeft() * scale + QPointF(1, 1), area->size() * scale) : QRectF();
}

// What is used up already is grey, the place that comes next stands out.
void PlaceGrid::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    painter.fillRect(rect(), palette().base());
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    for (int place = 1; place <= m_sheet.places(); ++place) {
        const QRectF area = areaOf(place).adjusted(0.5, 0.5, -0.5, -0.5);
        const QPalette::ColorRole role = place == m_place  ? QPalette::Highlight
                                         : place < m_place ? QPalette::Midlight
                                                           : QPalette::Base;
        painter.fillRect(area, palette().color(role));
        painter.drawRect(area);
    }
    if (!hasFocus())
        return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

void PlaceGrid::mousePressEvent(QMouseEvent *event)
{
    for (int place = 1; place <= m_sheet.places(); ++place) {
        if (areaOf(place).contains(event->position()))
            choose(place);
    }
}

void PlaceGrid::keyPressEvent(QKeyEvent *event)
{
    const auto step = stepOf(event->key(), m_sheet.across, m_sheet.places());
    if (!step) {
        QWidget::keyPressEvent(event);
        return;
    }
    const int wanted = m_place + *step;
    const bool isToEnd = std::abs(*step) >= m_sheet.places();
    if (isToEnd || (wanted >= 1 && wanted <= m_sheet.places()))
        choose(std::clamp(wanted, 1, m_sheet.places()));
}

void PlaceGrid::choose(int place)
{
    if (place == m_place)
        return;
    m_place = place;
    update();
    emit chosen(place);
}

} // namespace shipping

#include "printing/sheet_view.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

namespace printing
{

namespace
{

constexpr int border = 10; // around the paper, dots
constexpr double zoomStep = 1.25;
constexpr double smallestScale = 0.4; // dots to the millimetre
constexpr double largestScale = 40;
constexpr double millimetresPerInch = 25.4;
constexpr double fineScale = 5; // from which on a grid shows each millimetre, dots to one
constexpr int wheelNotch = 120; // eighths of a degree

} // namespace

SheetView::SheetView(const Document &document, Look look, QWidget *parent)
    : QAbstractScrollArea(parent)
    , m_document(document)
    , m_look(std::move(look))
{
    viewport()->setBackgroundRole(QPalette::Dark);
    setFocusPolicy(Qt::StrongFocus);
}

int SheetView::pageCount() const { return static_cast<int>(m_document.sheets.size()); }

const Sheet *SheetView::sheet() const
{
    return m_page <= pageCount() ? &m_document.sheets[static_cast<std::size_t>(m_page - 1)] : nullptr;
}

void SheetView::turnTo(int page)
{
    page = std::clamp(page, 1, std::max(1, pageCount()));
    if (page == m_page)
        return;
    m_page = page;
    layOut();
    verticalScrollBar()->setValue(0);
    emit turned(page);
}

void SheetView::setCalibrationGrid(bool on)
{
    m_look.calibrationGrid = on;
    viewport()->update();
}

void SheetView::setMark(const QRectF &area)
{
    m_mark = area;
    viewport()->update();
}

void SheetView::showChange() { layOut(); }

void SheetView::zoomIn() { zoomTo(m_scale * zoomStep); }

void SheetView::zoomOut() { zoomTo(m_scale / zoomStep); }

void SheetView::fitPage() { setFit(Fit::Page); }

void SheetView::fitWidth() { setFit(Fit::Width); }

void SheetView::setFit(Fit fit)
{
    m_fit = fit;
    layOut();
}

void SheetView::zoomTo(double scale)
{
    m_fit = Fit::None;
    m_scale = std::clamp(scale, smallestScale, largestScale);
    layOut();
}

double SheetView::fitting(const QSize &room) const
{
    const double across = (room.width() - 2 * border) / sheet()->readWidth();
    const double down = (room.height() - 2 * border) / sheet()->readHeight();
    return std::clamp(m_fit == Fit::Width ? across : std::min(across, down), smallestScale, largestScale);
}

void SheetView::layOut()
{
    if (!sheet())
        return;
    QSize room = maximumViewportSize();
    if (m_fit == Fit::Width) // beside the bar that it may need
        room.rwidth() -= verticalScrollBar()->sizeHint().width();
    if (m_fit != Fit::None)
        m_scale = fitting(room);
    const auto set = [](QScrollBar *bar, double length, int seen) {
        const int whole = static_cast<int>(length) + 2 * border;
        bar->setRange(0, std::max(0, whole - seen));
        bar->setPageStep(seen);
        bar->setSingleStep(std::max(1, seen / 20));
    };
    // Twice, since a bar that appears takes room away from the other direction.
    for (int i = 0; i < 2; ++i) {
        set(horizontalScrollBar(), sheet()->readWidth() * m_scale, viewport()->width());
        set(verticalScrollBar(), sheet()->readHeight() * m_scale, viewport()->height());
    }
    viewport()->update();
}

QRectF SheetView::paper() const
{
    const QSizeF size(sheet()->readWidth() * m_scale, sheet()->readHeight() * m_scale);
    const double x = std::max<double>(border, (viewport()->width() - size.width()) / 2);
    const double y = std::max<double>(border, (viewport()->height() - size.height()) / 2);
    return {QPointF(x - horizontalScrollBar()->value(), y - verticalScrollBar()->value()), size};
}

void SheetView::paintEvent(QPaintEvent *event)
{
    if (!sheet())
        return;
    const QRectF area = paper();
    drawPaper(area, event->rect());
    drawMark(area.topLeft());
}

void SheetView::drawPaper(const QRectF &area, const QRect &seen)
{
    QPainter painter(viewport());
    painter.setClipRect(seen);
    painter.fillRect(area, Qt::white);
    painter.setClipRect(area, Qt::IntersectClip);
    painter.translate(area.topLeft());
    // The sheet is drawn in its own size on a device of so many dots to the inch.
    const double natural = viewport()->logicalDpiX() / millimetresPerInch;
    painter.scale(m_scale / natural, m_scale / natural);
    Look look = m_look;
    look.fineGrid = m_scale >= fineScale;
    drawSheet(painter, m_document, *sheet(), look, usualUnprintableMargins());
}

void SheetView::drawMark(const QPointF &corner)
{
    if (m_mark.isNull())
        return;
    constexpr double around = 0.6; // millimetres, so that a line has a frame too
    const QRectF marked = m_mark.adjusted(-around, -around, around, around);
    QPainter painter(viewport());
    painter.setPen(QPen(QColor(0xd0, 0x20, 0x20), 2));
    painter.drawRect(QRectF(corner + marked.topLeft() * m_scale,
                            QSizeF(marked.width() * m_scale, marked.height() * m_scale)));
}

void SheetView::mousePressEvent(QMouseEvent *event)
{
    if (sheet() && event->button() == Qt::LeftButton)
        emit pointedAt((event->position() - paper().topLeft()) / m_scale);
    QAbstractScrollArea::mousePressEvent(event);
}

void SheetView::resizeEvent(QResizeEvent * /*event*/) { layOut(); }

/// With Ctrl the wheel zooms; at the end of the sheet it turns to the next one.
void SheetView::wheelEvent(QWheelEvent *event)
{
    const int turn = event->angleDelta().y();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        if (turn != 0)
            turn > 0 ? zoomIn() : zoomOut();
        event->accept();
        return;
    }
    const QScrollBar *bar = verticalScrollBar();
    const bool isAtEnd = turn < 0 ? bar->value() == bar->maximum() : bar->value() == bar->minimum();
    if (turn == 0 || !isAtEnd) {
        m_wheel = 0;
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    m_wheel = (m_wheel < 0) == (turn < 0) ? m_wheel + turn : turn;
    event->accept();
    if (std::abs(m_wheel) < wheelNotch)
        return;
    const int before = m_page;
    turnTo(m_page + (turn < 0 ? 1 : -1));
    if (turn > 0 && m_page != before)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    m_wheel = 0;
}

} // namespace printing

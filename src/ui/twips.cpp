#include "ui/twips.h"

#include <QApplication>
#include <QScreen>
#include <QStyle>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace ui
{

int pixelsFromTwips(double twips)
{
    constexpr double farthest = 100000 * twipsPerPixel;
    return std::abs(twips) < farthest ? static_cast<int>(std::lround(twips / twipsPerPixel)) : 0;
}

double twipsFromPixels(int pixels) { return pixels * twipsPerPixel; }

QRect roomOn(const QScreen &screen)
{
    constexpr int edge = 4; // pixels
    const int title = QApplication::style()->pixelMetric(QStyle::PM_TitleBarHeight);
    return screen.availableGeometry().adjusted(0, 0, -2 * edge, -title - edge);
}

void moveOnto(QWidget *window, const QPoint &wanted)
{
    const QScreen *screen = QGuiApplication::screenAt(wanted);
    const QRect room = roomOn(screen ? *screen : *QGuiApplication::primaryScreen());
    window->resize(window->size().boundedTo(room.size()));
    const int right = std::max(room.left(), room.right() - window->width() + 1);
    const int bottom = std::max(room.top(), room.bottom() - window->height() + 1);
    window->move(std::clamp(wanted.x(), room.left(), right), std::clamp(wanted.y(), room.top(), bottom));
}

} // namespace ui

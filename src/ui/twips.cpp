#include "ui/twips.h"

#include <QGuiApplication>
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

void moveOnto(QWidget *window, const QPoint &wanted)
{
    const QScreen *screen = QGuiApplication::screenAt(wanted);
    // The frame is the window manager's and unknown until the window is shown; the style's title bar comes
    // near.
    const int title = window->style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QRect room =
        (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry().adjusted(0, 0, 0, -title);
    window->resize(window->size().boundedTo(room.size()));
    const int right = std::max(room.left(), room.right() - window->width() + 1);
    const int bottom = std::max(room.top(), room.bottom() - window->height() + 1);
    window->move(std::clamp(wanted.x(), room.left(), right), std::clamp(wanted.y(), room.top(), bottom));
}

} // namespace ui

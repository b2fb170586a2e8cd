#pragma once

#include <QPoint>
#include <QRect>

class QScreen;
class QWidget;

// Window positions are stored in twips, 1440 to the inch, at the screen's nominal 96 pixels.
namespace ui
{

inline constexpr double twipsPerPixel = 15.0;

/// Nearest pixel; nonsense beyond any screen counts as 0.
int pixelsFromTwips(double twips);
double twipsFromPixels(int pixels);

/// The room that a window has on \a screen beside the desktop's own bars and its frame. The frame is the
/// window manager's and unknown until the window is shown; what is left for it is a little more than is
/// usual.
QRect roomOn(const QScreen &screen);

/// Moves \a window to \a wanted, or as near as keeps it whole on a screen that exists now.
void moveOnto(QWidget *window, const QPoint &wanted);

} // namespace ui

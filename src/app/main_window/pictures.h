#pragma once

#include <QString>

namespace app
{

/// Files within the program: the shop of the main window (1600 × 560) and the program's icon, both SVG.
QString shopPicture();
QString programIcon();

} // namespace app

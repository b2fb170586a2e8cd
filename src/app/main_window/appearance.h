#pragma once

#include <QString>

class QApplication;
class QWidget;

namespace app
{

/// The colours of the screens.
enum class Colours { Automatic, Light, Dark };

/// Japanese texts of the toolkit's own dialogs, type, style. Call once, before the first window.
void setUpAppearance(QApplication &application);

/// Points by which the type is larger than usual because the desktop asks for large type.
int desktopSurplus();

/// Light or dark; automatic as the desktop is.
void applyColours(Colours colours);

/// The style sheet of the main window's own area, for the colours applied last.
QString mainWindowStyle();

} // namespace app

#pragma once

#include <QString>

class QStyle;

namespace ui
{

/// The style \a name, in which the control that has the focus always shows it. The toolkit's styles show it
/// on buttons and drop-downs only after Tab; a clerk comes to them by Enter. \return a style without owner;
/// the application takes it
QStyle *styleShowingFocus(const QString &name);

} // namespace ui

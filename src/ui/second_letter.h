#pragma once

#include <Qt>

class QPushButton;

namespace ui
{

/// Has Alt and \a letter press \a button as well, where a twin of its screen has the same button under that
/// letter.
void pressAlsoBy(QPushButton &button, Qt::Key letter);

} // namespace ui

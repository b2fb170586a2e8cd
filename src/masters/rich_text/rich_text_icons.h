#pragma once

#include <QIcon>

class QPalette;

namespace masters
{

/// The icon of the toolbar command \a key ("太字", "左揃え" …) in the colours of \a palette; a null icon for
/// a command without one.
QIcon richTextIcon(const QString &key, const QPalette &palette);

} // namespace masters

#pragma once

#include "base/progress.h"

class QWidget;

namespace ui
{

/// Does \a work, which reports to the function it is given; after half a second a dialog under \a parent says
/// \a what is going on ("書き出しています。"), how far it is, and offers to stop it. Returns what \a work
/// returned; a work that was stopped returns db::cancelled(). Nothing else on the screen can be used
/// meanwhile.
base::Status runWithProgress(QWidget *parent, const QString &what,
                             const std::function<base::Status(const base::Progress &)> &work);

} // namespace ui

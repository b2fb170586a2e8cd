#pragma once

#include "base/progress.h"

#include <optional>
#include <type_traits>

class QWidget;

namespace ui
{

/// Gives \a work the function that runWithProgress() speaks of.
void watched(QWidget *parent, const QString &what, const std::function<void(const base::Progress &)> &work);

/// Does \a work, which reports to the function it is given; after half a second a dialog under \a parent says
/// \a what is going on ("書き出しています。"), how far it is, and offers to stop it. Returns the Status or
/// Result that \a work returned; a work that was stopped returns base::cancelled(). Nothing else on the
/// screen can be used meanwhile.
template <class Work>
auto runWithProgress(QWidget *parent, const QString &what, const Work &work)
    -> std::invoke_result_t<const Work &, const base::Progress &>
{
    std::optional<std::invoke_result_t<const Work &, const base::Progress &>> outcome;
    watched(parent, what, [&](const base::Progress &progress) { outcome.emplace(work(progress)); });
    return std::move(*outcome);
}

} // namespace ui

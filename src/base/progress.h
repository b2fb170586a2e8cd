#pragma once

#include "base/result.h"

#include <functional>

namespace base
{

/// How long work tells how far it is: \a done of \a total, which is 0 while nobody knows it.
/// \return false when the work is to stop. May be called often; what it costs is its own business.
using Progress = std::function<bool(qint64 done, qint64 total)>;

/// Goes on whatever happens, for callers that nobody watches.
inline bool unwatched(qint64, qint64) { return true; }

} // namespace base
